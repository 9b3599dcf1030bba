#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/FileIdentity.h"
#include "base/FileTime.h"
#include "base/Result.h"

namespace vantrel {

/// What stands at a path once links have been followed.
enum class PathTarget : std::uint8_t { missing, file, directory };

enum class LinkKind : std::uint8_t { notALink, symbolicLink };

/// An entry's own attributes (of the link, where it is one).
struct FileAttributes {
    std::int64_t size = 0;  ///< bytes
    FileTime modificationDate{};
    LinkKind link = LinkKind::notALink;
    std::uint32_t posixPermissions = 0;  ///< the permission bits of st_mode
};

/// One entry of a folder. `attributes` is empty where they could not be read.
struct DirectoryEntry {
    std::string name;  ///< bytes as the file system gave them
    PathTarget target = PathTarget::missing;
    std::optional<FileAttributes> attributes;
    std::optional<FileIdentity> identity = {};  ///< of the target, once links have been followed
    std::optional<CalendarTime> changed = {};   ///< the target: its entries, contents or attributes
};

/// Free and total bytes of a volume.
struct VolumeCapacity {
    std::int64_t freeBytes = 0;
    std::int64_t totalBytes = 0;
    bool operator==(const VolumeCapacity&) const = default;
};

/// Port: the file system as the panels and the commands see it. Paths are raw bytes of any length. Main
/// thread only; a call returns when the file system has answered. Failures are values.
class FileManager {
public:
    /// Says of a name whether its entry is wanted; an unwanted one is not looked at any further.
    using NameFilter = std::function<bool(std::string_view name)>;

    virtual ~FileManager() = default;

    /// The entries of a folder without "." and "..", in the order that the file system gives.
    virtual Result<std::vector<DirectoryEntry>> contentsOfDirectory(const std::string& path,
                                                                    const NameFilter& wanted) = 0;

    /// Follows links.
    virtual PathTarget targetOf(const std::string& path) = 0;

    /// Whether this user may read what stands at `path`.
    virtual bool isReadable(const std::string& path) = 0;

    /// What stands at `path`, a link itself rather than its target; nothing where it cannot be told.
    virtual std::optional<FileIdentity> identityOf(const std::string& path) = 0;

    /// The folder at `path`, through links, and every folder above it, nearest first, as far as the system
    /// tells: empty where it is none or cannot be opened. These are the folders that hold it, whatever names
    /// and links `path` goes through.
    virtual std::vector<FileIdentity> ancestryOf(const std::string& path) = 0;

    /// The folders to which `trashItem` adds something when it gets that item, each an absolute path.
    virtual std::vector<std::string> trashFoldersFor(const std::string& path) = 0;

    /// Capacity of the volume that holds `path`; nothing where it cannot be told.
    virtual std::optional<VolumeCapacity> volumeCapacity(const std::string& path) = 0;

    /// Copies an item, a folder with all it holds, a link as a link. Never replaces anything: file_exists
    /// when `to` is taken. On failure nothing of the copy remains.
    [[nodiscard]] virtual std::error_code copyItem(const std::string& from, const std::string& to) = 0;

    /// Gives an item another name or place. Never replaces anything: file_exists when `to` is taken. On
    /// failure the item is whole and where it was.
    [[nodiscard]] virtual std::error_code moveItem(const std::string& from, const std::string& to) = 0;

    /// Makes a folder and those above it that are missing. One that is there is no error.
    [[nodiscard]] virtual std::error_code createDirectory(const std::string& path) = 0;

    /// Moves an item to the user's trash, from where it can be taken back, or leaves it where it is.
    [[nodiscard]] virtual std::error_code trashItem(const std::string& path) = 0;

    /// The first bytes of a file, at most `limit`. Fails for everything that is not an ordinary file, and
    /// never waits for one.
    virtual Result<std::string> readPrefix(const std::string& path, std::size_t limit) = 0;
};

}  // namespace vantrel
