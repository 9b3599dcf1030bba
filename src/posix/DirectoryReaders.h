#pragma once

#include <memory>

#include "platform/DirectoryReader.h"

/// What a pool of walking threads is given on this system. Any thread.
namespace vantrel {

/// The reader made for this system, and one that needs only POSIX. Their results are the same wherever the
/// system lets the second one tell what is a mount point.
std::unique_ptr<walking::DirectoryReader> makeNativeReader();
std::unique_ptr<walking::DirectoryReader> makePortableReader();

/// How many descriptors walks may keep: half of what the system allows the process, but no more than a few
/// thousand.
int descriptorBudgetOfWalks();

}  // namespace vantrel
