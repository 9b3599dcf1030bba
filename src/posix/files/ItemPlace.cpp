#include "posix/files/ItemPlace.h"

#include <fcntl.h>

#include "base/PathLocation.h"
#include "base/Paths.h"

namespace vantrel {

Result<ItemPlace> placeOf(const SystemCalls& calls, const std::string& path) {
    if (path.empty()) return std::make_error_code(std::errc::no_such_file_or_directory);
    const std::string parent = paths::deletingLastComponent(path);
    const Result<PathLocation> location = PathLocation::of(parent.empty() ? "." : parent);
    if (!location) return location.error();
    FileDescriptor folder(calls("openat", [&] {
        return ::openat(location.value().folder(), location.value().path(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    }));
    if (!folder) return lastError();
    return ItemPlace{std::move(folder), paths::lastComponent(path)};
}

Result<struct stat> statusOf(const SystemCalls& calls, int folder, const std::string& name) {
    struct stat status {};
    if (calls("fstatat", [&] { return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW); }) !=
        0) {
        return lastError();
    }
    return status;
}

std::error_code requireFree(const SystemCalls& calls, int folder, const std::string& name) {
    const Result<struct stat> status = statusOf(calls, folder, name);
    if (status) return std::make_error_code(std::errc::file_exists);
    if (status.error() != std::errc::no_such_file_or_directory) return status.error();
    return {};
}

bool isGone(const SystemCalls& calls, int folder, const std::string& name) {
    return statusOf(calls, folder, name).error() == std::errc::no_such_file_or_directory;
}

}  // namespace vantrel
