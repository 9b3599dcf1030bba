#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <system_error>
#include <vector>

#include "posix/files/VolumeKind.h"

namespace vantrel {

/// The state of an item at one moment, in all that would show a change to it.
struct ItemState {
    mode_t mode = 0;
    uid_t owner = 0;
    gid_t group = 0;
    nlink_t names = 0;
    off_t size = 0;
    timespec modified{};
    timespec changed{};

    static ItemState of(const struct stat& status) {
        return {status.st_mode, status.st_uid,  status.st_gid, status.st_nlink,
                status.st_size, status.st_mtim, status.st_ctim};
    }

    bool isFolder() const { return S_ISDIR(mode); }
    bool isFile() const { return S_ISREG(mode); }

    /// Whether nothing was done to the item in between: not even its date was set back afterwards.
    bool isUnchanged(const ItemState& now) const {
        return isSameButForName(now) && isSame(changed, now.changed);
    }

    /// The same for an item that was given another name or has lost one of its names, which counts as a
    /// change.
    bool isSameButForName(const ItemState& now) const {
        return mode == now.mode && owner == now.owner && group == now.group &&
               (isFolder() || (size == now.size && isSame(modified, now.modified)));
    }

    static bool isSame(const timespec& one, const timespec& other) {
        return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
    }
};

/// Whether the item was changed so short a time ago that one more change might show the same date.
bool isFresh(const struct stat& status, VolumeKind kind);

/// Every item of a tree as it stood when it was copied, from the top down, a folder before what it holds. A
/// plain value.
class TreeRecord {
public:
    struct Entry {
        std::string name;
        ItemState state;
        std::size_t end = 0;  ///< one past the index of the last entry below this one
        /// Whether its content may have changed without any other trace.
        bool isUncertain = false;
    };

    /// The next item; a folder stays open for those below it.
    void add(std::string name, const struct stat& status, bool isUncertain = false);
    /// Ends the innermost open folder.
    void finishFolder();

    const std::vector<Entry>& entries() const { return entries_; }
    const Entry& top() const { return entries_.front(); }

    /// Sorted names of what the folder at `index` held.
    std::vector<std::string> namesBelow(std::size_t index) const;

    /// Goes through all entries in order. `Visitor` has enter(entry, index) for a folder, leave(entry) when
    /// all below it were visited, and leaf(entry) for everything else; the first error ends it.
    template <class Visitor>
    [[nodiscard]] std::error_code visit(Visitor& visitor) const {
        std::vector<std::size_t> open;
        for (std::size_t index = 0; index < entries_.size() || !open.empty();) {
            if (!open.empty() && index == entries_[open.back()].end) {
                if (const std::error_code error = visitor.leave(entries_[open.back()])) return error;
                open.pop_back();
                continue;
            }
            const Entry& entry = entries_[index];
            const bool isFolder = entry.state.isFolder();
            if (isFolder) open.push_back(index);
            const std::error_code error = isFolder ? visitor.enter(entry, index) : visitor.leaf(entry);
            if (error) return error;
            ++index;
        }
        return {};
    }

    /// Extended attributes of the top item, the only one whose dates will not show a change to them: its new
    /// name counts as a change too.
    std::string topAttributes;

private:
    std::vector<Entry> entries_;
    std::vector<std::size_t> open_;
};

}  // namespace vantrel
