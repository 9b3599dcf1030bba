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

/// Whether an open folder is `ancestor` or lies below it, however it was reached.
bool liesWithin(int folder, const struct stat& ancestor) {
    FileDescriptor place = openItem({folder, "."}, passingFlags);
    struct stat status {};
    while (place && ::fstat(place.number(), &status) == 0) {
        if (isSameFile(status, ancestor)) return true;
        FileDescriptor above = openItem({place.number(), ".."}, passingFlags);
        struct stat statusAbove {};
        if (!above || ::fstat(above.number(), &statusAbove) != 0 || isSameFile(status, statusAbove))
            return false;
        place = std::move(above);
    }
    return false;
}

[[nodiscard]] std::error_code refuseCopyIntoItself(const struct stat& status, const ItemReference& target) {
    if (!S_ISDIR(status.st_mode) || !liesWithin(target.folder, status)) return {};
    return std::make_error_code(std::errc::invalid_argument);
}

bool isSameFolder(const ItemReference& one, const ItemReference& other) {
    struct stat folder {
    }, otherFolder{};
    return ::fstat(one.folder, &folder) == 0 && ::fstat(other.folder, &otherFolder) == 0 &&
           isSameFile(folder, otherFolder);
}

/// Whether the two names are spellings of one entry in a folder that does not tell them apart, rather than
/// two entries of the same file.
bool isSameEntry(const ItemReference& one, const ItemReference& other) {
    if (one.name == other.name || !isSameFolder(one, other)) return false;
    const Result<struct stat> status = statusOf(one);
    const Result<struct stat> otherStatus = statusOf(other);
    if (!status || !otherStatus || !isSameFile(*status, *otherStatus)) return false;
    const FileDescriptor listed = openItem({other.folder, "."}, listingFlags);
    const Result<std::vector<std::string>> names = namesIn(listed.number());
    return names && std::ranges::find(*names, other.name) == names->end();
}

/// Waits until the new name, and the removal of the old one, have reached the disk. Undoes a move that cannot
/// be flushed.
[[nodiscard]] std::error_code flushMove(const ItemReference& source, const ItemReference& target) {
    std::error_code error = flushFolder(target.folder);
    if (!error && !isSameFolder(source, target)) error = flushFolder(source.folder);
    if (!error) return {};
    const std::error_code stays = renameExclusively(target, source);
    return stays ? std::error_code() : error;
}

/// Moves an item by copying it, once a rename has turned out not to reach.
[[nodiscard]] std::error_code moveByCopy(const StopRequested& stop, const ItemReference& source,
                                         const struct stat& status, const ItemReference& target) {
    TreeRecord record;
    if (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)) {
        const FileDescriptor item = openItem(source, readingFlags);
        if (!item) return lastError();
        record.topAttributes = extendedAttributesOf(item.number());
    }
    PendingCopy copy(stop, target);
    if (const auto error = copy.make(source, status, &record)) return error;
    if (const auto error = checkInPlace(record, source)) return error;
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
    const Result<struct stat> status = statusOf(*source);
    if (!status) return status.error();
    if (const auto error = requireFree(*target)) return error;
    if (const auto error = refuseCopyIntoItself(*status, *target)) return error;
    const WithheldSignal fileSizeLimit(SIGXFSZ);
    clearLeftovers(target->folder);
    PendingCopy copy(stop_, *target);
    if (const auto error = copy.make(*source, *status, nullptr)) return error;
    return copy.putInPlace();
}

std::error_code FileOperations::moveItem(const std::string& from, const std::string& to) const {
    const Result<ItemPlace> source = placeOf(from);
    if (!source) return source.error();
    const Result<ItemPlace> target = placeOf(to);
    if (!target) return target.error();
    const Result<struct stat> status = statusOf(*source);
    if (!status) return status.error();
    if (const auto error = refuseCopyIntoItself(*status, *target)) return error;

    const WithheldSignal fileSizeLimit(SIGXFSZ);
    clearLeftovers(source->folder);
    clearLeftovers(target->folder);
    const std::error_code error = renameExclusively(*source, *target);
    if (!error) return flushMove(*source, *target);
    if (error == std::errc::cross_device_link) {
        if (const auto taken = requireFree(*target)) return taken;
        return moveByCopy(stop_, *source, *status, *target);
    }
    if (error == std::errc::file_exists && isSameEntry(*source, *target)) {
        const auto respell = [&] {
            return ::renameat(source->folder, source->name.c_str(), target->folder, target->name.c_str());
        };
        const std::error_code refused = outcomeOf(respell);
        return refused ? refused : flushFolder(source->folder);
    }
    return error;
}

std::error_code FileOperations::createDirectory(const std::string& path, mode_t mode) const {
    if (path.empty()) return std::make_error_code(std::errc::no_such_file_or_directory);
    return makeFolders(path, mode);
}

}  // namespace vantrel
