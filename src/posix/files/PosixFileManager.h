#pragma once

#include "platform/FileManager.h"

namespace vantrel {

/// The file system by POSIX system calls. Paths may be longer than PATH_MAX; nothing blocks on a FIFO or a
/// device; an entry that vanishes while its folder is listed counts as missing. Main thread only: an
/// operation holds back the signals that would end the program.
class PosixFileManager final : public FileManager {
public:
    /// Fails as open(2) and readdir(3) do. What cannot be looked at, such as a dangling or looping link, is
    /// in the list as `PathTarget::missing`.
    Result<std::vector<DirectoryEntry>> contentsOfDirectory(const std::string& path,
                                                            const NameFilter& wanted) override;
    PathTarget targetOf(const std::string& path) override;
    bool isReadable(const std::string& path) override;
    std::optional<FileIdentity> identityOf(const std::string& path) override;
    std::vector<FileIdentity> ancestryOf(const std::string& path) override;
    std::vector<std::string> trashFoldersFor(const std::string& path) override;
    /// What this user may still fill (f_bavail): less than is free where some of it is reserved.
    std::optional<VolumeCapacity> volumeCapacity(const std::string& path) override;

    // Described at FileOperations, Trash and readFilePrefix.
    [[nodiscard]] std::error_code copyItem(const std::string& from, const std::string& to) override;
    [[nodiscard]] std::error_code moveItem(const std::string& from, const std::string& to) override;
    [[nodiscard]] std::error_code createDirectory(const std::string& path) override;
    [[nodiscard]] std::error_code trashItem(const std::string& path) override;
    Result<std::string> readPrefix(const std::string& path, std::size_t limit) override;
};

}  // namespace vantrel
