#include "support/FakeFileManager.h"

#include <algorithm>
#include <utility>

#include "base/Paths.h"

namespace vantrel::test {

DirectoryEntry folderEntry(const std::string& name) {
    return {name, PathTarget::directory, FileAttributes{.size = 4096, .posixPermissions = 0755}};
}

DirectoryEntry fileEntry(const std::string& name, std::int64_t size) {
    return {name, PathTarget::file, FileAttributes{.size = size, .posixPermissions = 0644}};
}

void FakeFileManager::addFolder(const std::string& folder, const std::string& name) {
    add(folder, folderEntry(name));
    folders_[paths::appending(folder, name)];
}

void FakeFileManager::addFile(const std::string& folder, const std::string& name, std::int64_t size) {
    add(folder, fileEntry(name, size));
}

void FakeFileManager::add(const std::string& folder, DirectoryEntry entry) {
    folders_[folder].push_back(std::move(entry));
}

Result<std::vector<DirectoryEntry>> FakeFileManager::contentsOfDirectory(const std::string& path,
                                                                         const NameFilter& wanted) {
    listedFolders.push_back(path);
    if (unreadable_[path]) return std::make_error_code(std::errc::permission_denied);
    const auto folder = folders_.find(path);
    if (folder == folders_.end()) return std::make_error_code(std::errc::no_such_file_or_directory);
    std::vector<DirectoryEntry> entries;
    for (const DirectoryEntry& entry : folder->second) {
        if (!wanted(entry.name)) continue;
        inspectedNames.push_back(entry.name);
        entries.push_back(entry);
    }
    return entries;
}

PathTarget FakeFileManager::targetOf(const std::string& path) {
    if (folders_.contains(path)) return PathTarget::directory;
    const auto folder = folders_.find(paths::deletingLastComponent(path));
    if (folder == folders_.end()) return PathTarget::missing;
    const auto entry = std::ranges::find(folder->second, paths::lastComponent(path), &DirectoryEntry::name);
    return entry == folder->second.end() ? PathTarget::missing : entry->target;
}

bool FakeFileManager::isReadable(const std::string& path) {
    return !unreadable_[path] && targetOf(path) != PathTarget::missing;
}

std::optional<VolumeCapacity> FakeFileManager::volumeCapacity(const std::string&) {
    return capacity;
}

std::error_code FakeFileManager::carryOut(const std::string& operation) {
    operations.push_back(operation);
    if (onOperation) onOperation();
    return operationError;
}

std::error_code FakeFileManager::copyItem(const std::string& from, const std::string& to) {
    return carryOut("copy " + from + " to " + to);
}

std::error_code FakeFileManager::moveItem(const std::string& from, const std::string& to) {
    return carryOut("move " + from + " to " + to);
}

std::error_code FakeFileManager::createDirectory(const std::string& path) {
    return carryOut("make " + path);
}

std::error_code FakeFileManager::trashItem(const std::string& path) {
    return carryOut("trash " + path);
}

Result<std::string> FakeFileManager::readPrefix(const std::string& path, std::size_t limit) {
    const auto content = contents.find(path);
    if (content == contents.end()) return std::make_error_code(std::errc::permission_denied);
    return content->second.substr(0, limit);
}

}  // namespace vantrel::test
