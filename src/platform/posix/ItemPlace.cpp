#include "platform/posix/ItemPlace.h"

#include <fcntl.h>

#include <cstdint>
#include <random>

#include "platform/PathLocation.h"
#include "platform/Paths.h"

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

std::string temporaryName() {
    static constexpr char digits[] = "0123456789abcdef";
    std::random_device random;
    std::string name = ".vantrel-";
    for (int count = 0; count < 4; ++count) {
        for (std::uint32_t bits = random(), nibble = 0; nibble < 8; ++nibble, bits >>= 4)
            name += digits[bits & 15];
    }
    return name;
}

}  // namespace vantrel
