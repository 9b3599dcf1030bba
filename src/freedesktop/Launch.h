#pragma once

#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "base/FileDescriptor.h"
#include "base/Result.h"

/// Starts other programs and lets go of them. Any thread.
namespace vantrel::launching {

/// Path of the first executable file called `name` in those folders of $PATH that are absolute; `name` itself
/// where it is absolute and executable. Nothing is ever looked up in the working directory.
std::optional<std::string> programOnPath(const std::string& name);

/// A descriptor for fchdir(2). This needs permission to enter the folder, but not to read it.
Result<FileDescriptor> openToEnter(const std::string& folder);

/// Starts the program at the path `arguments[0]` with the folder as its working directory, or this process's
/// where that is empty. It gets a session of its own and the null device for its input and output, and nobody
/// has to wait for it: it becomes init's child. Returns when the program has started; fails as chdir(2) does
/// on the folder and as execve(2) does on the program.
[[nodiscard]] std::error_code launch(const std::vector<std::string>& arguments, const std::string& folder);

}  // namespace vantrel::launching
