#include "posix/files/Trees.h"

#include <fcntl.h>
#include <unistd.h>

#include <vector>

#include "base/SystemCall.h"
#include "posix/files/FolderStack.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/Mounts.h"

namespace vantrel {

namespace {

constexpr mode_t ownersBits = 0700;

class TreeRemoval {
public:
    explicit TreeRemoval(int folder) : stack_(folder), mount_(mountOf(folder)) {}

    [[nodiscard]] std::error_code run(const std::string& name) {
        remove(name);
        while (!open_.empty()) {
            if (!open_.back().names.empty()) {
                removeNext();
            } else if (!removeEmptied()) {
                break;  // the way back is lost
            }
        }
        return first_;
    }

private:
    struct OpenFolder {
        std::string name;
        std::vector<std::string> names;  // still to be removed
    };

    void note(const std::error_code& error) {
        if (!first_) first_ = error;
    }

    void noteUnlessGone(const std::error_code& error) {
        if (error != std::errc::no_such_file_or_directory) note(error);
    }

    void removeNext() {
        const std::string name = std::move(open_.back().names.back());
        open_.back().names.pop_back();
        remove(name);
    }

    void remove(const std::string& name) {
        const Result<struct stat> status = statusOf({stack_.current(), name});
        if (!status) {
            noteUnlessGone(status.error());
        } else if (S_ISDIR(status->st_mode)) {
            enter(name, *status);
        } else {
            unlink(name, 0);
        }
    }

    void unlink(const std::string& name, int flags) {
        noteUnlessGone(unlinkItem({stack_.current(), name}, flags));
    }

    void enter(const std::string& name, const struct stat& status) {
        // Read-only folders are emptied too. If this is refused, the next steps fail and say so.
        if ((status.st_mode & ownersBits) != ownersBits) {
            (void)uninterrupted(
                [&] { return ::fchmodat(stack_.current(), name.c_str(), ownersBits, AT_SYMLINK_NOFOLLOW); });
        }
        if (const std::error_code error = stack_.enter(name)) return note(error);
        open_.push_back({name, {}});
        if (mountOf(stack_.current()) != mount_)
            return note(std::make_error_code(std::errc::device_or_resource_busy));
        Result<std::vector<std::string>> names = stack_.names();
        if (!names) return note(names.error());
        open_.back().names = std::move(*names);
    }

    /// Returns whether this is still the way that led down.
    bool removeEmptied() {
        const std::string name = std::move(open_.back().name);
        open_.pop_back();
        if (const std::error_code error = stack_.leave()) {
            note(error);
            return false;
        }
        unlink(name, AT_REMOVEDIR);
        return true;
    }

    FolderStack stack_;
    std::uint64_t mount_;
    std::vector<OpenFolder> open_;
    std::error_code first_;
};

}  // namespace

std::error_code removeTree(const ItemReference& item) {
    return TreeRemoval(item.folder).run(item.name);
}

std::error_code removeContents(int folder) {
    const Result<std::vector<std::string>> names = namesIn(folder);
    if (!names) return names.error();
    std::error_code first;
    for (const std::string& name : *names) {
        const std::error_code error = removeTree({folder, name});
        if (!first) first = error;
    }
    return first;
}

}  // namespace vantrel
