#pragma once

#include <vector>

#include "platform/DirectoryReader.h"

namespace vantrel::walking {

/// POSIX.1-2017 (fdopendir, readdir, fstatat), plus the system's way of telling mount points if it has one.
/// Without that, only the device number gives a mount away: a mount of the walk's own file system (a bind
/// mount) is entered, a part of it with a device number of its own (a subvolume) is not, and an automount is
/// triggered. One thread at a time.
class PosixDirectoryReader final : public DirectoryReader {
public:
    PosixDirectoryReader();

    Result<FileDescriptor> openRoot(const std::string& path, Volume& volume) override;
    Result<FileDescriptor> openFolder(int parent, const char* name, Volume& volume) override;
    Result<FileDescriptor> openBelow(int ancestor, const std::string& relativePath, Volume& volume) override;
    Result<std::unique_ptr<DirectoryStream>> beginReading(int folder) override;
    Batch read(int folder, DirectoryStream* stream) override;
    bool reachedEnd(int folder, Volume& volume) const override;
    bool expectsMore() const override;
    int measuringFrom(int folder) override { return folder; }
    bool next(Entry& entry) override;
    void rewind() override { position_ = 0; }
    std::error_code measure(int folder, const char* name, Measure& measure) override;
    Result<FolderLook> look(int folder, const char* name) override;
    Result<FolderLook> look(int folder) override;
    FolderTrust trust(int folder) override;
    void rest() override {}

private:
    std::vector<char> names_;  // per entry: its kind in one byte, the name, a zero byte
    std::size_t position_ = 0;
    bool reachedEnd_ = false;
};

}  // namespace vantrel::walking
