#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileManager.h"

namespace vantrel::test {

/// A file system in memory in which operations really happen, so that a test reads back their effect. Folders
/// list their entries in the order in which they came. Records the calls; can fail at any of them. One
/// thread.
class FakeFileManager final : public FileManager {
public:
    struct Item {
        DirectoryEntry entry;                ///< what a listing says of it
        std::optional<std::string> content;  ///< of a file; without one it reads as zeros of the entry's size
        bool isReadable = true;
        std::vector<std::unique_ptr<Item>> children;  ///< in the order of listing
    };

    FakeFileManager();

    /// Each adds an entry to a folder, which comes into being with all those above it. What stands under the
    /// name already is described anew.
    void addFolder(const std::string& folder, const std::string& name);
    void addFile(const std::string& folder, const std::string& name, std::int64_t size = 0);
    Item& add(const std::string& folder, DirectoryEntry entry);

    /// The file at `path`, made where there is none, holds `content` now.
    void write(const std::string& path, std::string content);

    /// What stands at `path`, a new folder where there is nothing, may not be read by this user.
    void makeUnreadable(const std::string& path);

    /// Removes all entries of a folder; it stays, empty.
    void clear(const std::string& folder) { folderAt(folder).children.clear(); }

    /// The root of everything, for whoever changes things as another program would.
    Item& root() { return root_; }
    static Item* childNamed(Item& folder, std::string_view name);
    static std::size_t countOf(const Item& item);  ///< with all that it holds

    Result<std::vector<DirectoryEntry>> contentsOfDirectory(const std::string& path,
                                                            const NameFilter& wanted) override;
    PathTarget targetOf(const std::string& path) override;
    bool isReadable(const std::string& path) override;
    std::optional<FileIdentity> identityOf(const std::string& path) override;
    std::vector<FileIdentity> ancestryOf(const std::string& path) override;
    std::vector<std::string> trashFoldersFor(const std::string&) override { return trashFolders; }
    std::optional<VolumeCapacity> volumeCapacity(const std::string& path) override;
    std::error_code copyItem(const std::string& from, const std::string& to) override;
    std::error_code moveItem(const std::string& from, const std::string& to) override;
    std::error_code createDirectory(const std::string& path) override;
    std::error_code trashItem(const std::string& path) override;
    Result<std::string> readPrefix(const std::string& path, std::size_t limit) override;

    std::vector<std::string> listedFolders;   ///< one entry for each listing, in order
    std::vector<std::string> inspectedNames;  ///< of entries that were wanted
    std::vector<std::string> operations;      ///< what was asked for, in order, such as "copy /a to /b"

    std::optional<VolumeCapacity> capacity;
    std::size_t mostItems = SIZE_MAX;  ///< more do not fit

    bool tellsIdentities = false;           ///< of items whose entry has none
    std::vector<std::string> trashFolders;  ///< what is told of them; items do not come there

    std::function<std::error_code()> fault;  ///< asked before every call, which fails with what it answers
    std::error_code operationError;          ///< what every operation fails with
    std::function<void()> onOperation;       ///< called before each of them

    /// Called after each that succeeded, with what went and what came, or is there ("" for nothing).
    std::function<void(const std::string& from, const std::string& to)> onChange;

private:
    /// A name in a folder, whether something stands under it or not.
    struct Place {
        Item* folder;
        std::string name;
    };

    std::error_code nextFault() const { return fault ? fault() : std::error_code(); }
    std::optional<FileIdentity> identityOf(Item& item);
    std::error_code end(const std::string& from, const std::string& to) const;
    std::error_code begin(const std::string& operation);
    Result<Item*> find(const std::string& path);
    Result<Place> placeOf(const std::string& path);
    Item& folderAt(const std::string& path);
    std::error_code requireFree(const Place& place);

    Item root_;
    std::uint64_t identities_ = 0;
};

/// An entry with attributes, to be changed where a test cares.
DirectoryEntry folderEntry(const std::string& name);
DirectoryEntry fileEntry(const std::string& name, std::int64_t size = 0);

}  // namespace vantrel::test
