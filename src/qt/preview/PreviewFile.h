#pragma once

#include <sys/stat.h>

#include <QByteArray>
#include <QFile>
#include <stop_token>
#include <string>

#include "base/FileDescriptor.h"
#include "base/Result.h"

namespace vantrel {

/// stat(2) for a path of any length; for a dangling link, the status of the link itself. Any thread; may take
/// as long as the file system likes.
Result<struct stat> lookAt(const std::string& path);

/// Opens a file for reading if it is a regular one. Anything else that takes its place meanwhile is not
/// waited for, and is closed again. Any thread; may take as long as the file system likes.
Result<FileDescriptor> openRegularFile(const std::string& path);

/// The first `limit` bytes, or fewer at the end of the file, on failure or when stopped. The file's position
/// stays where it is.
QByteArray firstBytes(const FileDescriptor& file, qsizetype limit, const std::stop_token& stop);

/// A file that can no longer be read once it has been stopped, so that a decoder in the middle of it soon
/// gives up.
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
