#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/FileManager.h"

namespace vantrel::test {

/// A file system in memory with a fixed listing order. Records the calls; can fail at one of them.
class FakeFileManager final : public FileManager {
public:
    /// Adds an entry to a folder (which comes into being with its first entry).
    void addFolder(const std::string& folder, const std::string& name);
    void addFile(const std::string& folder, const std::string& name, std::int64_t size = 0);
    void add(const std::string& folder, DirectoryEntry entry);
    void makeUnreadable(const std::string& folder) { unreadable_[folder] = true; }

    /// Removes all entries of a folder; it stays, empty.
    void clear(const std::string& folder) { folders_[folder].clear(); }

    Result<std::vector<DirectoryEntry>> contentsOfDirectory(const std::string& path,
                                                            const NameFilter& wanted) override;
    PathTarget targetOf(const std::string& path) override;
    bool isReadable(const std::string& path) override;
    std::optional<VolumeCapacity> volumeCapacity(const std::string& path) override;
    std::error_code copyItem(const std::string& from, const std::string& to) override;
    std::error_code moveItem(const std::string& from, const std::string& to) override;
    std::error_code createDirectory(const std::string& path) override;
    std::error_code trashItem(const std::string& path) override;
    Result<std::string> readPrefix(const std::string& path, std::size_t limit) override;

    std::vector<std::string> listedFolders;  ///< one entry for each listing, in order
    std::vector<std::string> inspectedNames;
    std::optional<VolumeCapacity> capacity;

    /// The changes that were asked for, in order, such as "copy /a to /b"; the listing stays as it is.
    std::vector<std::string> operations;
    std::error_code operationError;               ///< what each of them answers
    std::function<void()> onOperation;            ///< called by each of them, where it is set
    std::map<std::string, std::string> contents;  ///< of files, by path; others cannot be read

private:
    std::error_code carryOut(const std::string& operation);

    std::map<std::string, std::vector<DirectoryEntry>> folders_;
    std::map<std::string, bool> unreadable_;
};

/// An entry with attributes, to be changed where a test cares.
DirectoryEntry folderEntry(const std::string& name);
DirectoryEntry fileEntry(const std::string& name, std::int64_t size = 0);

}  // namespace vantrel::test
