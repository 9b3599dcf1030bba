#pragma once

#include <sys/stat.h>

#include <QByteArray>
#include <QFile>
#include <stop_token>
#include <string>

#include "base/FileDescriptor.h"
#include "base/Result.h"

namespace vantrel {

/// stat(2) for a path of any length; a link to nowhere is looked at itself. Any thread; may take as long as
/// the file system likes.
Result<struct stat> lookAt(const std::string& path);

/// Opens a regular file for reading and nothing else: what has become something else since `lookAt` is not
/// waited for and closed again. Any thread; may take as long as the file system likes.
Result<FileDescriptor> openRegularFile(const std::string& path);

/// The first `limit` bytes, or fewer at the end of the file, on failure or when stopped. The file's position
/// stays where it is.
QByteArray firstBytes(const FileDescriptor& file, qsizetype limit, const std::stop_token& stop);

/// A file that cannot be read any more once it has been stopped, so that a decoder in the middle of it gives
/// up soon.
class StoppableFile final : public QFile {
public:
    /// `file` is open for reading.
    StoppableFile(FileDescriptor file, std::stop_token stop);

    bool isStopped() const { return stop_.stop_requested(); }

    /// From now on it can be read to its end.
    void ignoreStop() { stop_ = {}; }

protected:
    qint64 readData(char* data, qint64 limit) override;

private:
    std::stop_token stop_;
};

}  // namespace vantrel
