#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/Result.h"
#include "posix/files/Mounts.h"
#include "posix/files/TrashCan.h"

namespace vantrel {

/// Puts items into the user's trash as the freedesktop.org Trash specification 1.0 says: into the home trash
/// if they lie on its file system, else into a trash at the top of their own. Items are only ever renamed;
/// what cannot be trashed stays where it is. Blocks; one thread at a time.
class Trash {
public:
    /// Tells the mount of an open folder whose absolute path, without links, is given.
    using MountFinder = std::function<Result<Mount>(int folder, const std::string& path)>;

    struct Settings {
        std::string dataHome;  ///< absolute; the folder that holds "Trash", made when missing
        MountFinder findMount = vantrel::findMount;
    };

    /// $XDG_DATA_HOME where it is absolute, else .local/share in the user's home folder. Must not run while
    /// another thread changes the environment.
    static Settings userSettings();

    explicit Trash(Settings settings) : settings_(std::move(settings)) {}

    /// `path` is absolute and without "." and ".."; a link is trashed itself. invalid_argument for the trash,
    /// for what lies directly in it and for the folders around it, operation_not_supported where no trash is
    /// kept.
    [[nodiscard]] std::error_code put(const std::string& path) const;

    /// The folders to which `put` would add something for that item: those of the home trash, or those of
    /// both trashes that the item's own file system may have. Empty where the item has no trash.
    std::vector<std::string> foldersFor(const std::string& path) const;

private:
    bool isHomeMount(const Mount& mount) const;
    Result<TrashCan> homeCan() const;
    Result<TrashCan> volumeCan(const Mount& mount) const;
    Result<TrashCan> openOwnCan(const ItemReference& place, const std::string& topFolder) const;

    Settings settings_;
};

}  // namespace vantrel
