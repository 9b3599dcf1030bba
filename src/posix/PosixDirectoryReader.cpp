#include "posix/PosixDirectoryReader.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>

#include <cstring>

#include "base/PathLocation.h"
#include "base/SystemCall.h"
#include "posix/ReaderCalls.h"

namespace vantrel::walking {

namespace {

constexpr int readFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
#ifdef AT_NO_AUTOMOUNT
constexpr int lookOnly = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
#else
constexpr int lookOnly = AT_SYMLINK_NOFOLLOW;
#endif
constexpr std::size_t batchBytes = std::size_t{64} * 1024;
constexpr std::size_t longestEntry = 1 + NAME_MAX + 1;

class PosixDirectoryStream final : public DirectoryStream {
public:
    explicit PosixDirectoryStream(DIR* stream) : stream_(stream) {}
    ~PosixDirectoryStream() override { ::closedir(stream_); }
    const dirent* next() { return nextEntry(stream_); }

private:
    DIR* stream_;
};

}  // namespace

PosixDirectoryReader::PosixDirectoryReader() {
    names_.reserve(batchBytes);
}

Result<FileDescriptor> PosixDirectoryReader::openRoot(const std::string& path, Volume&) {
    return openPath(path, readFlags);
}

Result<FileDescriptor> PosixDirectoryReader::openFolder(int parent, const char* name, Volume&) {
    return openUnlessMounted(parent, name, readFlags);
}

Result<FileDescriptor> PosixDirectoryReader::openBelow(int ancestor, const std::string& relativePath,
                                                       Volume&) {
    constexpr std::size_t oneComponent = 0;
    return openInPieces(ancestor, relativePath, oneComponent, [](int base, const char* piece) {
        return openUnlessMounted(base, piece, readFlags);
    });
}

Result<std::unique_ptr<DirectoryStream>> PosixDirectoryReader::beginReading(int folder) {
    // closedir closes what fdopendir was given, and the folder's own descriptor has to last longer.
    FileDescriptor own(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
    if (!own) return lastError();
    DIR* stream = ::fdopendir(own.number());
    if (!stream) return lastError();
    own.release();
    return std::unique_ptr<DirectoryStream>(std::make_unique<PosixDirectoryStream>(stream));
}

Batch PosixDirectoryReader::read(int, DirectoryStream* stream) {
    names_.clear();
    position_ = 0;
    reachedEnd_ = false;
    bool hasFailed = false;
    while (names_.size() + longestEntry <= batchBytes) {
        const dirent* entry = static_cast<PosixDirectoryStream*>(stream)->next();
        if (!entry) {
            reachedEnd_ = true;
            hasFailed = errno != 0;
            break;
        }
        if (isDotOrDotDot(entry->d_name)) continue;
        names_.push_back(static_cast<char>(kindOf(*entry)));
        names_.insert(names_.end(), entry->d_name, entry->d_name + std::strlen(entry->d_name) + 1);
    }
    if (!names_.empty()) return Batch::names;
    return hasFailed ? Batch::failed : Batch::end;
}

bool PosixDirectoryReader::reachedEnd(int, Volume&) const {
    return reachedEnd_;
}

bool PosixDirectoryReader::expectsMore() const {
    return !reachedEnd_;
}

bool PosixDirectoryReader::next(Entry& entry) {
    if (position_ == names_.size()) return false;
    entry.kind = static_cast<EntryKind>(names_[position_]);
    entry.name = &names_[position_ + 1];
    position_ += 1 + std::strlen(entry.name) + 1;
    return true;
}

std::error_code PosixDirectoryReader::measure(int folder, const char* name, Measure& measure) {
    struct stat status;
    if (uninterrupted([&] { return ::fstatat(folder, name, &status, lookOnly); }) != 0) return lastError();
    measure = measureOf(status);
    return {};
}

Result<FolderLook> PosixDirectoryReader::look(int, const char*) {
    return std::make_error_code(std::errc::not_supported);
}

Result<FolderLook> PosixDirectoryReader::look(int) {
    return std::make_error_code(std::errc::not_supported);
}

// POSIX does not tell what kind of file system it is.
FolderTrust PosixDirectoryReader::trust(int) {
    return FolderTrust::none;
}

}  // namespace vantrel::walking
