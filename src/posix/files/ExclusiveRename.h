#pragma once

#include <string>

#include "base/Result.h"

namespace vantrel {

/// Gives an item another name, perhaps in another folder of the same file system, and never replaces
/// anything: file_exists when the new name is taken, also when it was taken a moment ago. The folders are
/// open descriptors. A file system that can neither rename without replacing nor make hard links refuses.
std::error_code renameExclusively(int fromFolder, const std::string& fromName, int toFolder,
                                  const std::string& toName);

/// The same between two folders, for a folder too that its owner may not write to: giving it another place
/// writes to it, so it is made writable for that moment.
std::error_code renameBetweenFolders(int fromFolder, const std::string& fromName, int toFolder,
                                     const std::string& toName);

/// The same under `toName` or, where that is taken, under the next one with a number that is free. Answers
/// the name.
Result<std::string> renameToFreeName(int fromFolder, const std::string& fromName, int toFolder,
                                     const std::string& toName);

}  // namespace vantrel
