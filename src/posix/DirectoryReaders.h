#pragma once

#include <memory>

#include "platform/DirectoryReader.h"

/// What a pool of walking threads is given on this system. Any thread.
namespace vantrel {

/// The reader made for this system, and the one that needs POSIX only: the same results, as far as the
/// system tells the latter where something is mounted.
std::unique_ptr<walking::DirectoryReader> makeNativeReader();
std::unique_ptr<walking::DirectoryReader> makePortableReader();

/// How many descriptors walks may keep: half of what the system allows the process, and not more than some
/// thousand.
int descriptorBudgetOfWalks();

}  // namespace vantrel
