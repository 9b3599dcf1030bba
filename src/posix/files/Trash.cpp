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
    const Result<struct stat> status = statusOf(*item);
    if (!status) return status.error();
    const std::string folderPath = withoutLinks(paths::deletingLastComponent(path));
    const Result<Mount> mount = settings_.findMount(item->folder, folderPath);
    if (!mount) return mount.error();
    const WithheldSignal fileSizeLimit(SIGXFSZ);
    clearLeftovers(item->folder);
    const Result<TrashCan> can = isHomeMount(*mount) ? homeCan() : volumeCan(*mount);
    if (!can) return can.error();
    return can->put(*item, paths::appending(folderPath, item->name));
}

std::vector<std::string> Trash::foldersFor(const std::string& path) const {
    const Result<ItemPlace> item = placeOf(path);
    if (!item) return {};
    const Result<Mount> mount =
        settings_.findMount(item->folder, withoutLinks(paths::deletingLastComponent(path)));
    if (!mount) return {};
    const std::string user = std::to_string(::geteuid());
    const std::vector<std::string> cans =
        isHomeMount(*mount) ? std::vector{paths::appending(settings_.dataHome, "Trash")}
                            : std::vector{paths::appending(mount->topFolder, ".Trash/" + user),
                                          paths::appending(mount->topFolder, ".Trash-" + user)};
    std::vector<std::string> folders;
    for (const std::string& can : cans) {
        for (const char* part : {"files", "info"}) folders.push_back(paths::appending(can, part));
    }
    return folders;
}

/// Whether the home trash lies, or would be made, on that mount.
bool Trash::isHomeMount(const Mount& mount) const {
    std::string place = paths::appending(settings_.dataHome, "Trash");
    for (;;) {
        const Result<FileDescriptor> folder = openPath(place, passingFlags);
        if (folder) {
            const Result<Mount> own = settings_.findMount(folder->number(), withoutLinks(place));
            return own && own->number == mount.number;
        }
        // Missing, or not a folder: the answer depends on what it stands in. Whatever is wrong with it shows
        // later.
        if (place == "/") return false;
        place = paths::deletingLastComponent(place);
    }
}

Result<TrashCan> Trash::homeCan() const {
    const std::string place = paths::appending(settings_.dataHome, "Trash");
    if (const std::error_code error = FileOperations().createDirectory(place, 0700)) return error;
    Result<FileDescriptor> folder = openPath(place, passingFlags);
    if (!folder) return folder.error();
    return TrashCan::open(std::move(*folder), "");
}

Result<TrashCan> Trash::volumeCan(const Mount& mount) const {
    if (!mount.keepsTrash) return std::make_error_code(std::errc::operation_not_supported);
    const Result<FileDescriptor> top = openPath(mount.topFolder, passingFlags);
    if (!top) return top.error();
    const std::string user = std::to_string(::geteuid());

    // The administrator's common folder, if it is one that users cannot take from each other.
    const ItemReference commonPlace{top->number(), ".Trash"};
    const Result<struct stat> common = statusOf(commonPlace);
    if (common && S_ISDIR(common->st_mode) && (common->st_mode & S_ISVTX) != 0) {
        const FileDescriptor place = openItem(commonPlace, passingFlags);
        if (Result<TrashCan> can = openOwnCan({place.number(), user}, mount.topFolder)) return can;
    }
    return openOwnCan({top->number(), ".Trash-" + user}, mount.topFolder);
}

Result<TrashCan> Trash::openOwnCan(const ItemReference& place, const std::string& topFolder) const {
    Result<FileDescriptor> folder = openOwnFolder(place, passingFlags);
    if (!folder) return folder.error();
    return TrashCan::open(std::move(*folder), topFolder);
}

}  // namespace vantrel
