#include "posix/DirectoryReaders.h"

#include <sys/resource.h>

#include <algorithm>

#include "posix/LinuxDirectoryReader.h"
#include "posix/PosixDirectoryReader.h"

namespace vantrel {

std::unique_ptr<walking::DirectoryReader> makeNativeReader() {
#ifdef __linux__
    return std::make_unique<walking::LinuxDirectoryReader>();
#else
    return makePortableReader();
#endif
}

std::unique_ptr<walking::DirectoryReader> makePortableReader() {
    return std::make_unique<walking::PosixDirectoryReader>();
}

int descriptorBudgetOfWalks() {
    constexpr rlim_t most = 4096;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 256;
    return static_cast<int>(std::min(limit.rlim_cur / 2, most));
}

}  // namespace vantrel
