#pragma once

#include "posix/DirectoryReaders.h"
#include "walk/WalkPool.h"

namespace vantrel::test {

/// A pool's options as the programs choose them.
inline WalkPool::Options nativeWalks() {
    return {.makeReader = makeNativeReader, .descriptorBudget = descriptorBudgetOfWalks()};
}

}  // namespace vantrel::test
