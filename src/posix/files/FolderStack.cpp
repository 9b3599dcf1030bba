#include "posix/files/FolderStack.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <string_view>
#include <utility>

#include "base/SystemCall.h"
#include "posix/files/ItemPlace.h"

namespace vantrel {

namespace {

constexpr std::size_t keptOpen = 32;

struct StreamCloser {
    void operator()(DIR* stream) const { ::closedir(stream); }
};

}  // namespace

std::error_code FolderStack::enter(const std::string& name) {
    Level level;
    const auto open = [&] { return openItem({current(), name}, listingFlags); };
    level.folder = open();
    if (!level.folder && isDescriptorShortage(lastError()) && closeOuterFolders()) level.folder = open();
    if (!level.folder) return lastError();
    if (uninterrupted([&] { return ::fstat(level.folder.number(), &level.status); }) != 0) return lastError();
    levels_.push_back(std::move(level));
    if (levels_.size() > keptOpen) levels_[levels_.size() - 1 - keptOpen].folder.close();
    return {};
}

std::error_code FolderStack::leave() {
    const Level left = std::move(levels_.back());
    levels_.pop_back();
    if (levels_.empty() || levels_.back().folder) return {};
    Level& outer = levels_.back();
    FileDescriptor found = openItem({left.folder.number(), ".."}, listingFlags);
    struct stat status {};
    if (!found || uninterrupted([&] { return ::fstat(found.number(), &status); }) != 0) return lastError();
    if (!isSameFile(status, outer.status)) return std::make_error_code(std::errc::no_such_file_or_directory);
    outer.folder = std::move(found);
    return {};
}

Result<std::vector<std::string>> FolderStack::names() {
    Result<std::vector<std::string>> names = namesIn(current());
    if (!names && isDescriptorShortage(names.error()) && closeOuterFolders()) return namesIn(current());
    return names;
}

/// Closes all but the innermost. Returns whether any was open.
bool FolderStack::closeOuterFolders() {
    bool wasOpen = false;
    for (std::size_t outer = 0; outer + 1 < levels_.size(); ++outer) {
        wasOpen = wasOpen || levels_[outer].folder;
        levels_[outer].folder.close();
    }
    return wasOpen;
}

Result<std::vector<std::string>> namesIn(int folder) {
    // A second descriptor, because the stream closes its own; duplicated, because opening by name needs one
    // more permission than reading does.
    FileDescriptor own(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
    if (!own) return lastError();
    const std::unique_ptr<DIR, StreamCloser> stream(::fdopendir(own.number()));
    if (stream == nullptr) return lastError();
    own.release();
    ::rewinddir(stream.get());
    std::vector<std::string> names;
    while (const dirent* const entry = nextEntry(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") names.emplace_back(name);
    }
    if (errno != 0) return lastError();
    return names;
}

}  // namespace vantrel
