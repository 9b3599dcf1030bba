#pragma once

#include <fcntl.h>

#include <string>

#include "base/FileDescriptor.h"
#include "base/Result.h"

namespace vantrel {

/// A path of any length in the form that the *at system calls take: a folder and a path below it that is
/// shorter than PATH_MAX. Any thread; costs nothing while the whole path is short.
class PathLocation {
public:
    /// `path` is raw bytes; a relative one starts at the current folder. Fails as open(2) does on the folders
    /// that have to be opened on the way.
    static Result<PathLocation> of(const std::string& path);

    /// AT_FDCWD, or a descriptor that this location keeps open.
    int folder() const { return folder_ ? folder_.number() : AT_FDCWD; }
    const char* path() const { return path_.c_str(); }

private:
    PathLocation(FileDescriptor folder, std::string path)
        : folder_(std::move(folder)), path_(std::move(path)) {}

    FileDescriptor folder_;
    std::string path_;
};

/// open(2) for a path of any length, never interrupted; O_CLOEXEC is added. `mode` is that of a new file.
Result<FileDescriptor> openPath(const std::string& path, int flags, mode_t mode = 0600);

}  // namespace vantrel
