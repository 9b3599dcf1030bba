#include "posix/files/ItemPlace.h"

#include <fcntl.h>

#include "base/PathLocation.h"
#include "base/Paths.h"
#include "base/SystemCall.h"

namespace vantrel {

Result<ItemPlace> placeOf(const std::string& path) {
    if (path.empty()) return std::make_error_code(std::errc::no_such_file_or_directory);
    const std::string parent = paths::deletingLastComponent(path);
    const Result<PathLocation> location = PathLocation::of(parent.empty() ? "." : parent);
    if (!location) return location.error();
    FileDescriptor folder(uninterrupted([&] {
        return ::openat(location.value().folder(), location.value().path(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    }));
    if (!folder) return lastError();
    return ItemPlace{std::move(folder), paths::lastComponent(path)};
}

Result<struct stat> statusOf(int folder, const std::string& name) {
    struct stat status {};
    if (uninterrupted([&] { return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW); }) != 0) {
        return lastError();
    }
    return status;
}

std::error_code requireFree(int folder, const std::string& name) {
    const Result<struct stat> status = statusOf(folder, name);
    if (status) return std::make_error_code(std::errc::file_exists);
    if (status.error() != std::errc::no_such_file_or_directory) return status.error();
    return {};
}

bool isGone(int folder, const std::string& name) {
    return statusOf(folder, name).error() == std::errc::no_such_file_or_directory;
}

}  // namespace vantrel
