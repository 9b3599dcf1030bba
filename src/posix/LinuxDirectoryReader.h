#pragma once

#ifdef __linux__

#include "platform/DirectoryReader.h"

namespace vantrel::walking {

/// getdents64(2) into one large buffer, openat2(2) that refuses mount points by itself, fstatat that mounts
/// nothing. Each thread has a working folder of its own (unshare(2), CLONE_FS), since names relative to it
/// need no look into the table of descriptors that the threads share. Where the kernel or a sandbox has no
/// openat2, openat(2) and the device number take its place.
class LinuxDirectoryReader final : public DirectoryReader {
public:
    LinuxDirectoryReader();

    Result<FileDescriptor> openRoot(const std::string& path, Volume& volume) override;
    Result<FileDescriptor> openFolder(int parent, const char* name, Volume& volume) override;
    Result<FileDescriptor> openBelow(int ancestor, const std::string& relativePath, Volume& volume) override;
    Result<std::unique_ptr<DirectoryStream>> beginReading(int folder) override;
    bool read(int folder, DirectoryStream* stream) override;
    bool reachedEnd(int folder, Volume& volume) const override;
    bool expectsMore() const override;
    int measuringFrom(int folder) override;
    bool next(Entry& entry) override;
    void rewind() override { position_ = 0; }
    bool measure(int folder, const char* name, Measure& measure) override;
    void rest() override;

private:
    enum class WorkingFolder : std::uint8_t {
        notAsked,
        atHome,   ///< the thread's own, where the program was
        inAWalk,  ///< the thread's own, in the folder of the batch last measured
        shared,   ///< the system lets all threads have one only
    };

    bool ownsWorkingFolder();

    std::unique_ptr<char[]> batch_;  // records of getdents64
    std::size_t used_ = 0;           // bytes of them
    std::size_t position_ = 0;
    std::int64_t lastPosition_ = 0;  // in the folder, of the entry last taken
    WorkingFolder workingFolder_ = WorkingFolder::notAsked;
    FileDescriptor home_;  // where the program was when the thread got a working folder of its own
};

}  // namespace vantrel::walking

#endif
