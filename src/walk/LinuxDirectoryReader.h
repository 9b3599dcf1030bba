#pragma once

#ifdef __linux__

#include "walk/DirectoryReader.h"

namespace vantrel::walking {

/// getdents64(2) into one large buffer, openat2(2) that refuses mount points by itself, fstatat that mounts
/// nothing. Where the kernel or a sandbox has no openat2, openat(2) and the device number take its place.
class LinuxDirectoryReader final : public DirectoryReader {
public:
    LinuxDirectoryReader();

    Result<FileDescriptor> openRoot(const std::string& path, Volume& volume) override;
    Result<FileDescriptor> openFolder(int parent, const char* name, Volume& volume) override;
    Result<FileDescriptor> openBelow(int ancestor, const std::string& relativePath, Volume& volume) override;
    Result<std::unique_ptr<DirectoryStream>> beginReading(int folder) override;
    bool read(int folder, DirectoryStream* stream) override;
    bool reachedEnd() const override { return false; }
    bool expectsMore() const override;
    bool next(Entry& entry) override;
    bool measure(int folder, const char* name, Measure& measure) override;

private:
    std::unique_ptr<char[]> batch_;  // records of getdents64
    std::size_t used_ = 0;           // bytes of them
    std::size_t position_ = 0;
};

}  // namespace vantrel::walking

#endif
