#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/engine/FolderPlace.h"

namespace vantrel {

/// Says of a change of files which folders hold something else than before. By paths, and by identities where
/// these are known, so that links and other mounts lead to the same answer. A value; any thread.
class ContentsChange {
public:
    enum class Afterwards : std::uint8_t {
        there,
        gone,
        inPart,  ///< there, but something below it may be gone
    };

    /// What came, went, or became another, in part perhaps.
    struct Item {
        std::string path;  ///< absolute
        Afterwards afterwards = Afterwards::there;
        std::vector<FileIdentity> identities = {};  ///< of what stood there before, and stands there now
        Ancestry above = {};  ///< of the folders around it, before and now, in any order
    };

    /// One and the same item that has another path now. What it holds is as it was.
    struct Renaming {
        std::string from;
        std::string to;
    };

    explicit ContentsChange(std::vector<Item> items, std::optional<Renaming> renaming = std::nullopt);

    /// Whether a total of that folder from before the change is no longer to be believed: it holds an item,
    /// or is one, or lies below one.
    bool outdates(std::string_view path, const FolderPlace& place) const;

    /// Whether that folder went with an item: asking for its total would only say that it is not there.
    bool takesAway(std::string_view path, const FolderPlace& place) const;

    /// The folders that hold an item, and the items themselves, as far as their identities are known.
    std::vector<FileIdentity> folders() const;

    /// Whether something below an item may be gone although the item is there.
    bool isInPart() const;

    /// Where something stands now that was found at `path` before and is still the same; nothing where it has
    /// not moved.
    std::optional<std::string> newPathOf(std::string_view path) const;

private:
    bool happenedIn(std::string_view folder, const FolderPlace& place) const;

    std::vector<Item> items_;
    std::optional<Renaming> renaming_;
    std::vector<FileIdentity> above_;  // of all items; sorted
};

}  // namespace vantrel
