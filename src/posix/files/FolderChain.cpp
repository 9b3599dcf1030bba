#include "posix/files/FolderChain.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "base/SystemCall.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/Leftovers.h"
#include "posix/files/WrittenFiles.h"

namespace vantrel {

namespace {

/// Makes or enters the folders of a path one after the other and remembers which of them it made.
class FolderChain {
public:
    explicit FolderChain(mode_t mode) : mode_(mode) {}

    [[nodiscard]] std::error_code make(const std::string& path) {
        std::error_code error = makeAll(path);
        for (auto made = made_.begin(); made != made_.end() && !error; ++made)
            error = flushFolder(made->folder);
        if (error) {
            // A folder that somebody has put something into stays.
            for (auto made = made_.rbegin(); made != made_.rend(); ++made)
                (void)unlinkItem(*made, AT_REMOVEDIR);
        }
        return error;
    }

private:
    [[nodiscard]] std::error_code makeAll(const std::string& path) {
        FileDescriptor folder = open(AT_FDCWD, path.starts_with('/') ? "/" : ".");
        if (!folder) return lastError();
        for (std::size_t begin = 0; begin < path.size();) {
            const std::size_t end = std::min(path.find('/', begin), path.size());
            const std::string name = path.substr(begin, end - begin);
            begin = end + 1;
            if (name.empty()) continue;
            FileDescriptor next = open(folder.number(), name);
            if (!next && errno == ENOENT) {
                if (const std::error_code error = makeOne(folder, name)) return error;
                next = open(folder.number(), name);
            }
            if (!next) return lastError();
            folder = std::move(next);
        }
        return {};
    }

    [[nodiscard]] std::error_code makeOne(const FileDescriptor& folder, const std::string& name) {
        FileDescriptor kept = openItem({folder.number(), "."}, passingFlags);
        if (!kept) return lastError();
        clearLeftovers(folder.number());
        if (uninterrupted([&] { return ::mkdirat(folder.number(), name.c_str(), mode_); }) == 0) {
            made_.emplace_back(std::move(kept), name);
        } else if (errno != EEXIST) {
            return lastError();
        }
        return {};
    }

    /// Follows links too: they are part of the way.
    static FileDescriptor open(int folder, const std::string& name) {
        return FileDescriptor(
            uninterrupted([&] { return ::openat(folder, name.c_str(), passingFlags | O_CLOEXEC); }));
    }

    mode_t mode_;
    std::vector<ItemPlace> made_;
};

}  // namespace

std::error_code makeFolders(const std::string& path, mode_t mode) {
    return FolderChain(mode).make(path);
}

}  // namespace vantrel
