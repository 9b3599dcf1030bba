#include "qt/preview/PreviewFile.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "base/PathLocation.h"
#include "base/SystemCall.h"

namespace vantrel {

Result<struct stat> lookAt(const std::string& path) {
    const Result<PathLocation> location = PathLocation::of(path);
    if (!location) return location.error();
    struct stat found {};
    for (const int flags : {0, AT_SYMLINK_NOFOLLOW}) {
        if (::fstatat(location->folder(), location->path(), &found, flags) == 0) return found;
    }
    return lastError();
}

Result<FileDescriptor> openRegularFile(const std::string& path) {
    const Result<struct stat> before = lookAt(path);
    if (!before) return before.error();
    // Opening alone can rewind a tape or let a writer into a FIFO.
    if (!S_ISREG(before->st_mode)) return std::make_error_code(std::errc::not_supported);
    Result<FileDescriptor> file = openPath(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file) return file;
    struct stat opened {};
    if (::fstat(file->number(), &opened) != 0) return lastError();
    if (!S_ISREG(opened.st_mode)) return std::make_error_code(std::errc::not_supported);
    return file;
}

QByteArray firstBytes(const FileDescriptor& file, qsizetype limit, const std::stop_token& stop) {
    QByteArray bytes(limit, Qt::Uninitialized);
    qsizetype size = 0;
    while (size < limit && !stop.stop_requested()) {
        const auto count = uninterrupted([&] {
            return ::pread(file.number(), bytes.data() + size, static_cast<std::size_t>(limit - size), size);
        });
        if (count <= 0) break;
        size += count;
    }
    bytes.truncate(size);
    return bytes;
}

StoppableFile::StoppableFile(FileDescriptor file, std::stop_token stop) : stop_(std::move(stop)) {
    const int number = file.release();
    // On failure nothing has become the owner of the descriptor.
    if (!open(number, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) FileDescriptor(number).close();
}

qint64 StoppableFile::readData(char* data, qint64 limit) {
    return isStopped() ? -1 : QFile::readData(data, limit);
}

}  // namespace vantrel
