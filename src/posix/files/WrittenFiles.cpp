#include "posix/files/WrittenFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "base/SystemCall.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/VolumeKind.h"

namespace vantrel {

namespace {

/// Up to this many, flushing each costs hardly more than flushing everything, and waits for nothing that
/// others have written.
constexpr std::size_t fewFiles = 4;

bool isUnsupported(const std::error_code& error) {
    return error == std::errc::invalid_argument || error == std::errc::function_not_supported ||
           error == std::errc::operation_not_supported;
}

/// Some file systems report a full disk only when a file is closed.
[[nodiscard]] std::error_code closed(FileDescriptor file) {
    return ::close(file.release()) == 0 ? std::error_code() : lastError();
}

}  // namespace

std::error_code flushFile(int file) {
    if (uninterrupted([&] { return ::fsync(file); }) == 0) return {};
    const std::error_code error = lastError();
    return isUnsupported(error) ? std::error_code() : error;
}

std::error_code flushFolder(int folder) {
    const FileDescriptor opened = openItem({folder, "."}, listingFlags);
    if (!opened) return errno == EACCES ? std::error_code() : lastError();
    return flushFile(opened.number());
}

WrittenFiles::WrittenFiles(int folder)
    : folder_(folder), isReachedByAll_(volumeKindOf(folder) == VolumeKind::native) {}

std::error_code WrittenFiles::add(FileDescriptor file) {
    if (!isReachedByAll_) {
        if (const std::error_code error = flushFile(file.number())) return error;
        return closed(std::move(file));
    }
    if (onlyAll_) return closed(std::move(file));
    kept_.push_back(std::move(file));
    return kept_.size() > fewFiles ? giveUpDescriptors() : std::error_code();
}

std::error_code WrittenFiles::addFolder(int folder) {
    if (!isReachedByAll_) return flushFile(folder);
    if (onlyAll_) return {};
    FileDescriptor second(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
    if (second) return add(std::move(second));
    onlyAll_ = true;
    return {};
}

std::error_code WrittenFiles::flush() {
    if (onlyAll_) {
        if (uninterrupted([&] { return ::syncfs(folder_); }) != 0) return lastError();
        return giveUpDescriptors();
    }
    // All are started before the first is waited for, so that together they take little longer than one.
    for (const FileDescriptor& file : kept_) {
        ::sync_file_range(file.number(), 0, 0, SYNC_FILE_RANGE_WRITE);
    }
    for (const FileDescriptor& file : kept_) {
        if (const std::error_code error = flushFile(file.number())) return error;
    }
    return giveUpDescriptors();
}

std::error_code WrittenFiles::giveUpDescriptors() {
    onlyAll_ = isReachedByAll_;
    std::error_code first;
    for (FileDescriptor& file : kept_) {
        const std::error_code error = closed(std::move(file));
        if (!first) first = error;
    }
    kept_.clear();
    return first;
}

}  // namespace vantrel
