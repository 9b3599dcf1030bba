#include "platform/posix/Trees.h"

#include <fcntl.h>
#include <unistd.h>

#include <vector>

#include "platform/posix/FolderStack.h"
#include "platform/posix/ItemPlace.h"
#include "platform/posix/Mounts.h"

namespace vantrel {

namespace {

constexpr mode_t ownersBits = 0700;

class TreeRemoval {
public:
    TreeRemoval(const SystemCalls& calls, int folder)
        : calls_(calls), stack_(calls, folder), mount_(mountOf(folder)) {}

    std::error_code run(const std::string& name) {
        if (const std::error_code error = remove(name)) return error;
        while (!open_.empty()) {
            const std::error_code error = open_.back().names.empty() ? removeEmptied() : removeNext();
            if (error) return error;
        }
        return {};
    }

private:
    struct OpenFolder {
        std::string name;
        std::vector<std::string> names;  // still to be removed
    };

    std::error_code removeNext() {
        const std::string name = std::move(open_.back().names.back());
        open_.back().names.pop_back();
        return remove(name);
    }

    std::error_code remove(const std::string& name) {
        const Result<struct stat> status = statusOf(calls_, stack_.current(), name);
        if (!status) {
            const bool hasVanished = status.error() == std::errc::no_such_file_or_directory;
            return hasVanished ? std::error_code() : status.error();
        }
        return S_ISDIR(status.value().st_mode) ? enter(name, status.value()) : unlink(name, 0);
    }

    std::error_code unlink(const std::string& name, int flags) const {
        const int answer =
            calls_("unlinkat", [&] { return ::unlinkat(stack_.current(), name.c_str(), flags); });
        return answer == 0 || errno == ENOENT ? std::error_code() : lastError();
    }

    std::error_code enter(const std::string& name, const struct stat& status) {
        // Read-only folders are emptied too. Where this is refused, what follows says so.
        if ((status.st_mode & ownersBits) != ownersBits) {
            calls_("fchmodat", [&] {
                return ::fchmodat(stack_.current(), name.c_str(), ownersBits, AT_SYMLINK_NOFOLLOW);
            });
        }
        if (const std::error_code error = stack_.enter(name)) return error;
        if (mountOf(stack_.current()) != mount_)
            return std::make_error_code(std::errc::device_or_resource_busy);
        Result<std::vector<std::string>> names = namesIn(calls_, stack_.current());
        if (!names) return names.error();
        open_.push_back({name, std::move(names.value())});
        return {};
    }

    std::error_code removeEmptied() {
        const std::string name = std::move(open_.back().name);
        open_.pop_back();
        if (const std::error_code error = stack_.leave()) return error;
        return unlink(name, AT_REMOVEDIR);
    }

    const SystemCalls& calls_;
    FolderStack stack_;
    std::uint64_t mount_;
    std::vector<OpenFolder> open_;
};

}  // namespace

std::error_code removeTree(const SystemCalls& calls, int folder, const std::string& name) {
    return TreeRemoval(calls, folder).run(name);
}

}  // namespace vantrel
