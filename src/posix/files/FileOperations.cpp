#include "posix/files/FileOperations.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <utility>
#include <vector>

#include "base/SystemCall.h"
#include "posix/WithheldSignal.h"
#include "posix/files/ExclusiveRename.h"
#include "posix/files/FileCopy.h"
#include "posix/files/FolderChain.h"
#include "posix/files/FolderStack.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/Leftovers.h"
#include "posix/files/OriginalCheck.h"
#include "posix/files/OriginalRemoval.h"
#include "posix/files/PendingCopy.h"
#include "posix/files/WrittenFiles.h"

namespace vantrel {

namespace {

constexpr int passingFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

/// Whether an open folder is `ancestor` or lies below it, however it was reached.
bool liesWithin(int folder, const struct stat& ancestor) {
    FileDescriptor place(uninterrupted([&] { return ::openat(folder, ".", passingFlags); }));
    struct stat status {};
    while (place && ::fstat(place.number(), &status) == 0) {
        if (isSameFile(status, ancestor)) return true;
        FileDescriptor above(uninterrupted([&] { return ::openat(place.number(), "..", passingFlags); }));
        struct stat statusAbove {};
        if (!above || ::fstat(above.number(), &statusAbove) != 0 || isSameFile(status, statusAbove))
            return false;
        place = std::move(above);
    }
    return false;
}

std::error_code refuseCopyIntoItself(const struct stat& status, const ItemPlace& target) {
    if (!S_ISDIR(status.st_mode) || !liesWithin(target.folder.number(), status)) return {};
    return std::make_error_code(std::errc::invalid_argument);
}

bool isSameFolder(const ItemPlace& one, const ItemPlace& other) {
    struct stat folder {
    }, otherFolder{};
    return ::fstat(one.folder.number(), &folder) == 0 && ::fstat(other.folder.number(), &otherFolder) == 0 &&
           isSameFile(folder, otherFolder);
}

/// Whether the two names are spellings of one entry in a folder that does not tell them apart, rather than
/// two entries of the same file.
bool isSameEntry(const ItemPlace& one, const ItemPlace& other) {
    if (one.name == other.name || !isSameFolder(one, other)) return false;
    const Result<struct stat> status = statusOf(one.folder.number(), one.name);
    const Result<struct stat> otherStatus = statusOf(other.folder.number(), other.name);
    if (!status || !otherStatus || !isSameFile(status.value(), otherStatus.value())) return false;
    const FileDescriptor listed(::openat(other.folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const Result<std::vector<std::string>> names = namesIn(listed.number());
    return names && std::ranges::find(names.value(), other.name) == names.value().end();
}

/// Waits until a new name has reached the disk, and the going of the old one. What cannot be brought there is
/// taken back.
std::error_code flushMove(const ItemPlace& source, const ItemPlace& target) {
    std::error_code error = flushFolder(target.folder.number());
    if (!error && !isSameFolder(source, target)) error = flushFolder(source.folder.number());
    if (!error) return {};
    const auto stays =
        renameExclusively(target.folder.number(), target.name, source.folder.number(), source.name);
    return stays ? std::error_code() : error;
}

/// Everything that a move of an item needs once a rename has turned out not to reach.
std::error_code moveByCopy(const StopRequested& stop, const ItemPlace& source, const struct stat& status,
                           const ItemPlace& target) {
    TreeRecord record;
    if (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)) {
        constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        const FileDescriptor item(
            uninterrupted([&] { return ::openat(source.folder.number(), source.name.c_str(), flags, 0); }));
        if (!item) return lastError();
        record.topAttributes = extendedAttributesOf(item.number());
    }
    PendingCopy copy(stop, target);
    if (const auto error = copy.make(source, status, &record)) return error;
    if (const auto error = checkInPlace(record, {source.folder.number(), source.name})) return error;
    if (const auto error = copy.putInPlace()) return error;
    OriginalRemoval removal(record, source, target);
    const std::error_code error = removal.run();
    if (error && removal.hasKeptAll()) copy.takeBack(record);
    return error;
}

}  // namespace

std::error_code FileOperations::copyItem(const std::string& from, const std::string& to) const {
    const Result<ItemPlace> source = placeOf(from);
    if (!source) return source.error();
    const Result<ItemPlace> target = placeOf(to);
    if (!target) return target.error();
    const Result<struct stat> status = statusOf(source.value().folder.number(), source.value().name);
    if (!status) return status.error();
    if (const auto error = requireFree(target.value().folder.number(), target.value().name)) return error;
    if (const auto error = refuseCopyIntoItself(status.value(), target.value())) return error;
    const WithheldSignal fileSizeLimit(SIGXFSZ);
    clearLeftovers(target.value().folder.number());
    PendingCopy copy(stop_, target.value());
    if (const auto error = copy.make(source.value(), status.value(), nullptr)) return error;
    return copy.putInPlace();
}

std::error_code FileOperations::moveItem(const std::string& from, const std::string& to) const {
    const Result<ItemPlace> source = placeOf(from);
    if (!source) return source.error();
    const Result<ItemPlace> target = placeOf(to);
    if (!target) return target.error();
    const int folder = source.value().folder.number();
    const int newFolder = target.value().folder.number();
    const std::string& name = source.value().name;
    const std::string& newName = target.value().name;
    const Result<struct stat> status = statusOf(folder, name);
    if (!status) return status.error();
    if (const auto error = refuseCopyIntoItself(status.value(), target.value())) return error;

    const WithheldSignal fileSizeLimit(SIGXFSZ);
    clearLeftovers(folder);
    clearLeftovers(newFolder);
    const std::error_code error = renameExclusively(folder, name, newFolder, newName);
    if (!error) return flushMove(source.value(), target.value());
    if (error == std::errc::cross_device_link) {
        if (const auto taken = requireFree(newFolder, newName)) return taken;
        return moveByCopy(stop_, source.value(), status.value(), target.value());
    }
    if (error == std::errc::file_exists && isSameEntry(source.value(), target.value())) {
        const int answer =
            uninterrupted([&] { return ::renameat(folder, name.c_str(), newFolder, newName.c_str()); });
        return answer == 0 ? flushFolder(folder) : lastError();
    }
    return error;
}

std::error_code FileOperations::createDirectory(const std::string& path, mode_t mode) const {
    if (path.empty()) return std::make_error_code(std::errc::no_such_file_or_directory);
    return makeFolders(path, mode);
}

}  // namespace vantrel
