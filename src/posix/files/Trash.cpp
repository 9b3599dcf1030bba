#include "posix/files/Trash.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <memory>

#include "base/PathLocation.h"
#include "base/Paths.h"
#include "base/SystemCall.h"
#include "posix/PosixProcessInfo.h"
#include "posix/WithheldSignal.h"
#include "posix/files/FileOperations.h"
#include "posix/files/Leftovers.h"
#include "posix/files/WrittenFiles.h"

namespace vantrel {

namespace {

constexpr int passingFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

bool isPlainAbsolute(const std::string& path) {
    const std::string ended = path + "/";
    return path.starts_with('/') && paths::lastComponent(path) != "/" &&
           ended.find("/./") == std::string::npos && ended.find("/../") == std::string::npos;
}

/// `path` without links; as it is where the system cannot tell (it is longer than PATH_MAX).
std::string withoutLinks(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    return resolved != nullptr ? resolved.get() : path;
}

}  // namespace

Trash::Settings Trash::userSettings() {
    const char* const dataHome = std::getenv("XDG_DATA_HOME");
    if (dataHome != nullptr && *dataHome == '/') return {.dataHome = dataHome};
    return {.dataHome = paths::appending(PosixProcessInfo().homeDirectory(), ".local/share")};
}

std::error_code Trash::put(const std::string& path) const {
    if (!isPlainAbsolute(path)) return std::make_error_code(std::errc::invalid_argument);
    const Result<ItemPlace> item = placeOf(path);
    if (!item) return item.error();
    const int folder = item.value().folder.number();
    const Result<struct stat> status = statusOf(folder, item.value().name);
    if (!status) return status.error();
    const std::string folderPath = withoutLinks(paths::deletingLastComponent(path));
    const Result<Mount> mount = settings_.findMount(folder, folderPath);
    if (!mount) return mount.error();
    const WithheldSignal fileSizeLimit(SIGXFSZ);
    clearLeftovers(folder);
    const Result<TrashCan> can = isHomeMount(mount.value()) ? homeCan() : volumeCan(mount.value());
    if (!can) return can.error();
    return can.value().put(item.value(), paths::appending(folderPath, item.value().name));
}

/// Whether the home trash lies, or would be made, on that mount.
bool Trash::isHomeMount(const Mount& mount) const {
    std::string place = paths::appending(settings_.dataHome, "Trash");
    for (;;) {
        const Result<FileDescriptor> folder = openPath(place, passingFlags);
        if (folder) {
            const Result<Mount> own = settings_.findMount(folder.value().number(), withoutLinks(place));
            return own && own.value().number == mount.number;
        }
        // A file in the folder's place still tells where it stands; what is wrong with it shows later.
        if (place == "/") return false;
        place = paths::deletingLastComponent(place);
    }
}

Result<TrashCan> Trash::homeCan() const {
    const std::string place = paths::appending(settings_.dataHome, "Trash");
    if (const std::error_code error = FileOperations().createDirectory(place, 0700)) return error;
    Result<FileDescriptor> folder = openPath(place, passingFlags);
    if (!folder) return folder.error();
    return TrashCan::open(std::move(folder.value()), "");
}

Result<TrashCan> Trash::volumeCan(const Mount& mount) const {
    if (!mount.keepsTrash) return std::make_error_code(std::errc::operation_not_supported);
    const Result<FileDescriptor> top = openPath(mount.topFolder, passingFlags);
    if (!top) return top.error();
    const int folder = top.value().number();
    const std::string user = std::to_string(::geteuid());

    // The administrator's common folder, if it is one that users cannot take from each other.
    const Result<struct stat> common = statusOf(folder, ".Trash");
    if (common && S_ISDIR(common.value().st_mode) && (common.value().st_mode & S_ISVTX) != 0) {
        const FileDescriptor place(
            uninterrupted([&] { return ::openat(folder, ".Trash", passingFlags | O_NOFOLLOW); }));
        if (Result<TrashCan> can = openOwnCan(place.number(), user, mount.topFolder)) return can;
    }
    return openOwnCan(folder, ".Trash-" + user, mount.topFolder);
}

Result<TrashCan> Trash::openOwnCan(int folder, const std::string& name, const std::string& topFolder) const {
    const bool isNew = uninterrupted([&] { return ::mkdirat(folder, name.c_str(), 0700); }) == 0;
    if (!isNew && errno != EEXIST) return lastError();
    if (const std::error_code error = isNew ? flushFolder(folder) : std::error_code()) return error;
    FileDescriptor opened(
        uninterrupted([&] { return ::openat(folder, name.c_str(), passingFlags | O_NOFOLLOW); }));
    struct stat status {};
    if (!opened || ::fstat(opened.number(), &status) != 0) return lastError();
    if (status.st_uid != ::geteuid()) return std::make_error_code(std::errc::permission_denied);
    return TrashCan::open(std::move(opened), topFolder);
}

}  // namespace vantrel
