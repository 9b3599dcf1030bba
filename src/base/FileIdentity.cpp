#include "base/FileIdentity.h"

#include <sys/stat.h>

#include "base/SystemCall.h"

namespace vantrel {

std::optional<FileIdentity> identify(int descriptor) {
    struct stat status;
    if (uninterrupted([&] { return ::fstat(descriptor, &status); }) != 0) return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace vantrel
