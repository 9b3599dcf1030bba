#include "posix/files/ItemPlace.h"

#include <unistd.h>

#include <climits>

#include "base/PathLocation.h"
#include "base/Paths.h"
#include "base/SystemCall.h"

namespace vantrel {

Result<ItemPlace> placeOf(const std::string& path) {
    if (path.empty()) return std::make_error_code(std::errc::no_such_file_or_directory);
    const std::string parent = paths::deletingLastComponent(path);
    Result<FileDescriptor> folder = openPath(parent.empty() ? "." : parent, passingFlags);
    if (!folder) return folder.error();
    return ItemPlace(std::move(*folder), paths::lastComponent(path));
}

Result<struct stat> statusOf(const ItemReference& item) {
    struct stat status {};
    const auto ask = [&] { return ::fstatat(item.folder, item.name.c_str(), &status, AT_SYMLINK_NOFOLLOW); };
    if (const std::error_code error = outcomeOf(ask)) return error;
    return status;
}

Result<std::string> targetOfLink(const ItemReference& link) {
    std::string target(PATH_MAX, '\0');
    const ssize_t size = uninterrupted(
        [&] { return ::readlinkat(link.folder, link.name.c_str(), target.data(), target.size()); });
    if (size < 0) return lastError();
    target.resize(static_cast<std::size_t>(size));
    return target;
}

FileDescriptor openItem(const ItemReference& item, int flags) {
    return FileDescriptor(uninterrupted(
        [&] { return ::openat(item.folder, item.name.c_str(), flags | O_NOFOLLOW | O_CLOEXEC, 0600); }));
}

std::error_code unlinkItem(const ItemReference& item, int flags) {
    return outcomeOf([&] { return ::unlinkat(item.folder, item.name.c_str(), flags); });
}

std::error_code requireFree(const ItemReference& item) {
    const Result<struct stat> status = statusOf(item);
    if (status) return std::make_error_code(std::errc::file_exists);
    if (status.error() != std::errc::no_such_file_or_directory) return status.error();
    return {};
}

bool isGone(const ItemReference& item) {
    return statusOf(item).error() == std::errc::no_such_file_or_directory;
}

}  // namespace vantrel
