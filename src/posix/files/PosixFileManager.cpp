#include "posix/files/PosixFileManager.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <memory>

#include "base/PathLocation.h"
#include "base/SystemCall.h"
#include "posix/StopSignals.h"
#include "posix/files/FileOperations.h"
#include "posix/files/FileReading.h"
#include "posix/files/Trash.h"

namespace vantrel {

namespace {

#ifdef O_PATH
constexpr int withoutReading = O_PATH;
#else
constexpr int withoutReading = O_RDONLY | O_NONBLOCK;
#endif

#ifdef AT_NO_AUTOMOUNT
constexpr int withoutMounting = AT_NO_AUTOMOUNT;
#else
constexpr int withoutMounting = 0;
#endif

struct StreamCloser {
    void operator()(DIR* stream) const { ::closedir(stream); }
};
using DirectoryStream = std::unique_ptr<DIR, StreamCloser>;

Result<DirectoryStream> openStream(const std::string& path) {
    // A FIFO would wait for its writer before the system notices that it is no folder.
    Result<FileDescriptor> folder = openPath(path, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    if (!folder) return folder.error();
    DirectoryStream stream(::fdopendir(folder->number()));
    if (stream == nullptr) return lastError();
    folder->release();
    return stream;
}

std::optional<struct stat> statusOf(int folder, const char* path, int flags) {
    struct stat status {};
    if (uninterrupted([&] { return ::fstatat(folder, path, &status, flags | withoutMounting); }) != 0) {
        return std::nullopt;
    }
    return status;
}

PathTarget targetOf(const std::optional<struct stat>& status) {
    if (!status) return PathTarget::missing;
    return S_ISDIR(status->st_mode) ? PathTarget::directory : PathTarget::file;
}

std::optional<FileIdentity> identityOf(const std::optional<struct stat>& status) {
    if (!status) return std::nullopt;
    return FileIdentity{status->st_dev, status->st_ino};
}

FileTime modificationDateOf(const struct stat& status) {
    const FileTime second{FileTime::duration(std::chrono::seconds(status.st_mtim.tv_sec))};
    return second + std::chrono::nanoseconds(status.st_mtim.tv_nsec);
}

CalendarTime changeTimeOf(const struct stat& status) {
    return CalendarTime(std::chrono::seconds(status.st_ctim.tv_sec) +
                        std::chrono::nanoseconds(status.st_ctim.tv_nsec));
}

DirectoryEntry entryNamed(const char* name, int folder) {
    const std::optional<struct stat> own = statusOf(folder, name, AT_SYMLINK_NOFOLLOW);
    if (!own) return {.name = name, .target = PathTarget::missing, .attributes = std::nullopt};
    const bool isLink = S_ISLNK(own->st_mode);
    const std::optional<struct stat> target = isLink ? statusOf(folder, name, 0) : own;
    return {.name = name,
            .target = targetOf(target),
            .attributes = FileAttributes{.size = own->st_size,
                                         .modificationDate = modificationDateOf(*own),
                                         .link = isLink ? LinkKind::symbolicLink : LinkKind::notALink,
                                         .posixPermissions = own->st_mode & 07777u},
            .identity = identityOf(target),
            .changed = target ? std::optional(changeTimeOf(*target)) : std::nullopt};
}

bool isSelfOrParent(std::string_view name) {
    return name == "." || name == "..";
}

std::optional<std::int64_t> product(std::uint64_t blocks, std::uint64_t blockSize) {
    std::int64_t bytes = 0;
    if (__builtin_mul_overflow(blocks, blockSize, &bytes)) return std::nullopt;
    return bytes;
}

}  // namespace

Result<std::vector<DirectoryEntry>> PosixFileManager::contentsOfDirectory(const std::string& path,
                                                                          const NameFilter& wanted) {
    const Result<DirectoryStream> stream = openStream(path);
    if (!stream) return stream.error();
    DIR* const directory = stream->get();
    std::vector<DirectoryEntry> entries;
    while (const dirent* const read = nextEntry(directory)) {
        if (isSelfOrParent(read->d_name) || !wanted(read->d_name)) continue;
        entries.push_back(entryNamed(read->d_name, ::dirfd(directory)));
    }
    if (errno != 0) return lastError();
    return entries;
}

PathTarget PosixFileManager::targetOf(const std::string& path) {
    const Result<PathLocation> location = PathLocation::of(path);
    if (!location) return PathTarget::missing;
    return vantrel::targetOf(statusOf(location->folder(), location->path(), 0));
}

bool PosixFileManager::isReadable(const std::string& path) {
    const Result<PathLocation> location = PathLocation::of(path);
    return location && uninterrupted([&] {
                           return ::faccessat(location->folder(), location->path(), R_OK, AT_EACCESS);
                       }) == 0;
}

std::optional<FileIdentity> PosixFileManager::identityOf(const std::string& path) {
    const Result<PathLocation> location = PathLocation::of(path);
    if (!location) return std::nullopt;
    return vantrel::identityOf(
        statusOf(location.value().folder(), location.value().path(), AT_SYMLINK_NOFOLLOW));
}

std::vector<FileIdentity> PosixFileManager::ancestryOf(const std::string& path) {
    std::vector<FileIdentity> ancestry;
    Result<FileDescriptor> opened = openPath(path, withoutReading | O_DIRECTORY);
    if (!opened) return ancestry;
    FileDescriptor folder = std::move(opened.value());
    for (;;) {
        const std::optional<FileIdentity> identity = identify(folder.number());
        // The top folder is its own parent.
        if (!identity || (!ancestry.empty() && *identity == ancestry.back())) return ancestry;
        ancestry.push_back(*identity);
        FileDescriptor above(uninterrupted(
            [&] { return ::openat(folder.number(), "..", withoutReading | O_DIRECTORY | O_CLOEXEC); }));
        if (!above) return ancestry;
        folder = std::move(above);
    }
}

std::vector<std::string> PosixFileManager::trashFoldersFor(const std::string& path) {
    return Trash(Trash::userSettings()).foldersFor(path);
}

std::optional<VolumeCapacity> PosixFileManager::volumeCapacity(const std::string& path) {
    const Result<FileDescriptor> place = openPath(path, withoutReading);
    struct statvfs volume {};
    if (!place || uninterrupted([&] { return ::fstatvfs(place->number(), &volume); }) != 0) {
        return std::nullopt;
    }
    const auto freeBytes = product(volume.f_bavail, volume.f_frsize);
    const auto totalBytes = product(volume.f_blocks, volume.f_frsize);
    if (!freeBytes || !totalBytes) return std::nullopt;
    return VolumeCapacity{.freeBytes = *freeBytes, .totalBytes = *totalBytes};
}

std::error_code PosixFileManager::copyItem(const std::string& from, const std::string& to) {
    const StopSignals signals;
    return FileOperations([&] { return signals.hasArrived(); }).copyItem(from, to);
}

std::error_code PosixFileManager::moveItem(const std::string& from, const std::string& to) {
    const StopSignals signals;
    return FileOperations([&] { return signals.hasArrived(); }).moveItem(from, to);
}

std::error_code PosixFileManager::createDirectory(const std::string& path) {
    const StopSignals signals;
    return FileOperations().createDirectory(path);
}

std::error_code PosixFileManager::trashItem(const std::string& path) {
    const StopSignals signals;
    return Trash(Trash::userSettings()).put(path);
}

Result<std::string> PosixFileManager::readPrefix(const std::string& path, std::size_t limit) {
    return readFilePrefix(path, limit);
}

}  // namespace vantrel
