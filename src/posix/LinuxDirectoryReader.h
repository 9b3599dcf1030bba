#pragma once

#ifdef __linux__

#include "platform/DirectoryReader.h"

namespace vantrel::walking {

/// Uses getdents64(2) with one large buffer, openat2(2), which refuses mount points by itself, and fstatat(2)
/// without automounts. Each thread has a working folder of its own (unshare(2), CLONE_FS), because looking up
/// names relative to it avoids the descriptor table that the threads share. Where the kernel or a sandbox has
/// no openat2, `openUnlessMounted` takes its place.
class LinuxDirectoryReader final : public DirectoryReader {
public:
    LinuxDirectoryReader();

    Result<FileDescriptor> openRoot(const std::string& path, Volume& volume) override;
    Result<FileDescriptor> openFolder(int parent, const char* name, Volume& volume) override;
    Result<FileDescriptor> openBelow(int ancestor, const std::string& relativePath, Volume& volume) override;
    Result<std::unique_ptr<DirectoryStream>> beginReading(int folder) override;
    Batch read(int folder, DirectoryStream* stream) override;
    bool reachedEnd(int folder, Volume& volume) const override;
    bool expectsMore() const override;
    int measuringFrom(int folder) override;
    bool next(Entry& entry) override;
    void rewind() override { position_ = 0; }
    std::error_code measure(int folder, const char* name, Measure& measure) override;
    Result<FolderLook> look(int folder, const char* name) override;
    Result<FolderLook> look(int folder) override;
    FolderTrust trust(int folder) override;
    void rest() override;

private:
    enum class WorkingFolder : std::uint8_t {
        notAsked,
        atHome,   ///< the thread's own, where the program was
        inAWalk,  ///< the thread's own, in the folder of the batch last measured
        shared,   ///< the system gives all threads one in common
    };

    bool ownsWorkingFolder();

    std::unique_ptr<char[]> batch_;  // records of getdents64
    std::size_t used_ = 0;           // bytes of it in use
    std::size_t position_ = 0;
    std::int64_t lastPosition_ = 0;  // of the entry last taken, in the folder
    WorkingFolder workingFolder_ = WorkingFolder::notAsked;
    FileDescriptor home_;  // where the program was when the thread got a working folder of its own
};

}  // namespace vantrel::walking

#endif
