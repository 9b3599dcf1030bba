#include "base/PathLocation.h"

#include <climits>

#include "base/SystemCall.h"

namespace vantrel {

namespace {

constexpr std::size_t longestPath = PATH_MAX - 1;  // PATH_MAX counts the zero byte at the end

FileDescriptor openFolder(int folder, const std::string& path) {
#ifdef O_PATH
    constexpr int access = O_PATH;
#else
    constexpr int access = O_RDONLY;
#endif
    return FileDescriptor(
        uninterrupted([&] { return ::openat(folder, path.c_str(), access | O_DIRECTORY | O_CLOEXEC); }));
}

}  // namespace

Result<PathLocation> PathLocation::of(const std::string& path) {
    // Cut short at a zero byte, the path would be that of another file.
    if (path.find('\0') != std::string::npos) return std::make_error_code(std::errc::invalid_argument);
    PathLocation location(FileDescriptor(), path);
    while (location.path_.size() > longestPath) {
        const std::size_t slash = location.path_.rfind('/', longestPath);
        const std::size_t next =
            slash == std::string::npos ? slash : location.path_.find_first_not_of('/', slash);
        // Without a place to cut, the kernel itself says that the name is too long.
        if (slash == std::string::npos || slash == 0 || next == std::string::npos) break;
        location.folder_ = openFolder(location.folder(), location.path_.substr(0, slash));
        if (!location.folder_) return lastError();
        location.path_.erase(0, next);
    }
    return location;
}

Result<FileDescriptor> openPath(const std::string& path, int flags, mode_t mode) {
    const Result<PathLocation> location = PathLocation::of(path);
    if (!location) return location.error();
    FileDescriptor opened(uninterrupted(
        [&] { return ::openat(location->folder(), location->path(), flags | O_CLOEXEC, mode); }));
    if (!opened) return lastError();
    return opened;
}

}  // namespace vantrel
