#include "posix/files/Trees.h"

#include <fcntl.h>
#include <unistd.h>

#include <vector>

#include "base/SystemCall.h"
#include "posix/files/FileCopy.h"
#include "posix/files/FolderStack.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/Mounts.h"

namespace vantrel {

namespace {

class TreeCopy {
public:
    TreeCopy(const CopyTask& task, int folder, int newFolder)
        : task_(task), original_(folder), copy_(newFolder), mount_(mountOf(folder)) {}

    [[nodiscard]] std::error_code run(const std::string& name, const std::string& newName) {
        if (const std::error_code error = enter(name, newName)) return error;
        root_ = copy_.status();
        while (!remaining_.empty()) {
            const std::error_code error = remaining_.back().empty() ? finishFolder() : copyNext();
            if (error) return error;
        }
        return {};
    }

private:
    [[nodiscard]] std::error_code enter(const std::string& name, const std::string& newName) {
        const auto make = [&] { return ::mkdirat(copy_.current(), newName.c_str(), 0700); };
        if (const std::error_code error = outcomeOf(make)) return error;
        if (const std::error_code error = original_.enter(name)) return error;
        if (const std::error_code error = copy_.enter(newName)) return error;
        if (task_.isMove()) {
            if (const std::error_code error = requireRemovable()) return error;
            task_.record->add(name, original_.status());
        }
        Result<std::vector<std::string>> names = original_.names();
        if (!names) return names.error();
        remaining_.push_back(std::move(*names));
        return {};
    }

    [[nodiscard]] std::error_code requireRemovable() const {
        if (mountOf(original_.current()) != mount_)
            return std::make_error_code(std::errc::device_or_resource_busy);
        if (original_.status().st_uid == ::geteuid()) return {};
        return outcomeOf(
            [&] { return ::faccessat(original_.current(), ".", R_OK | W_OK | X_OK, AT_EACCESS); });
    }

    [[nodiscard]] std::error_code copyNext() {
        if (const std::error_code error = task_.goOn()) return error;
        const ItemReference item{original_.current(), std::move(remaining_.back().back())};
        remaining_.back().pop_back();
        const Result<struct stat> status = statusOf(item);
        if (!status) {
            const bool hasVanished = status.error() == std::errc::no_such_file_or_directory;
            return hasVanished ? std::error_code() : status.error();
        }
        if (!S_ISDIR(status->st_mode)) return copyLeaf(task_, item, *status, {copy_.current(), item.name});
        // The copy lies inside its original, and would grow without end.
        if (isSameFile(*status, root_)) return std::make_error_code(std::errc::invalid_argument);
        return enter(item.name, item.name);
    }

    [[nodiscard]] std::error_code finishFolder() {
        remaining_.pop_back();
        const auto error = copyAttributes(original_.current(), original_.status(), copy_.current());
        if (error) return error;
        if (const std::error_code refused = task_.written.addFolder(copy_.current())) return refused;
        if (task_.isMove()) task_.record->finishFolder();
        if (const std::error_code left = original_.leave()) return left;
        return copy_.leave();
    }

    const CopyTask& task_;
    FolderStack original_;
    FolderStack copy_;
    std::uint64_t mount_;
    struct stat root_ {};
    /// Names still to be copied, of each folder on the way down.
    std::vector<std::vector<std::string>> remaining_;
};

}  // namespace

std::error_code copyTree(const CopyTask& task, const ItemReference& original, const struct stat& status,
                         const ItemReference& copy) {
    if (!S_ISDIR(status.st_mode)) return copyLeaf(task, original, status, copy);
    return TreeCopy(task, original.folder, copy.folder).run(original.name, copy.name);
}

}  // namespace vantrel
