#include "platform/posix/FileOperations.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/posix/ExclusiveRename.h"
#include "platform/posix/FolderStack.h"
#include "platform/posix/ItemPlace.h"
#include "platform/posix/Trees.h"

namespace vantrel {

namespace {

constexpr int passingFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

/// Whether an open folder is `ancestor` or lies below it, however it was reached.
bool liesWithin(const SystemCalls& calls, int folder, const struct stat& ancestor) {
    FileDescriptor place(calls("openat", [&] { return ::openat(folder, ".", passingFlags); }));
    struct stat status {};
    while (place && ::fstat(place.number(), &status) == 0) {
        if (isSameFile(status, ancestor)) return true;
        FileDescriptor above(calls("openat", [&] { return ::openat(place.number(), "..", passingFlags); }));
        struct stat statusAbove {};
        if (!above || ::fstat(above.number(), &statusAbove) != 0 || isSameFile(status, statusAbove))
            return false;
        place = std::move(above);
    }
    return false;
}

std::error_code refuseCopyIntoItself(const SystemCalls& calls, const struct stat& status,
                                     const ItemPlace& target) {
    if (!S_ISDIR(status.st_mode) || !liesWithin(calls, target.folder.number(), status)) return {};
    return std::make_error_code(std::errc::invalid_argument);
}

/// Whether the two names are spellings of one entry in a folder that does not tell them apart, rather than
/// two entries of the same file.
bool isSameEntry(const SystemCalls& calls, const ItemPlace& one, const ItemPlace& other) {
    struct stat folder {
    }, otherFolder{};
    if (one.name == other.name || ::fstat(one.folder.number(), &folder) != 0 ||
        ::fstat(other.folder.number(), &otherFolder) != 0 || !isSameFile(folder, otherFolder)) {
        return false;
    }
    const Result<struct stat> status = statusOf(calls, one.folder.number(), one.name);
    const Result<struct stat> otherStatus = statusOf(calls, other.folder.number(), other.name);
    if (!status || !otherStatus || !isSameFile(status.value(), otherStatus.value())) return false;
    const FileDescriptor listed(::openat(other.folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const Result<std::vector<std::string>> names = namesIn(calls, listed.number());
    return names && std::ranges::find(names.value(), other.name) == names.value().end();
}

/// A copy in the making, beside its target. What is not put in place is removed.
class PendingCopy {
public:
    PendingCopy(const SystemCalls& calls, const ItemPlace& target) : calls_(calls), target_(target) {}
    PendingCopy(const PendingCopy&) = delete;
    PendingCopy& operator=(const PendingCopy&) = delete;
    ~PendingCopy() {
        if (exists_) removeTree(calls_, target_.folder.number(), name_);
    }

    std::error_code make(CopyPurpose purpose, const ItemPlace& source, const struct stat& status) {
        exists_ = true;
        return copyTree(calls_, purpose, source.folder.number(), source.name, status, target_.folder.number(),
                        name_);
    }

    std::error_code compareWith(const ItemPlace& source) const {
        return compareTrees(calls_, source.folder.number(), source.name, target_.folder.number(), name_);
    }

    /// Everything that was written has reached the disk.
    std::error_code flush() const {
        const FileDescriptor folder(calls_("openat", [&] {
            return ::openat(target_.folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        }));
        if (!folder || calls_("syncfs", [&] { return ::syncfs(folder.number()); }) != 0) return lastError();
        return {};
    }

    std::error_code putInPlace() {
        const int folder = target_.folder.number();
        const std::error_code error = renameExclusively(calls_, folder, name_, folder, target_.name);
        if (!error) exists_ = false;
        return error;
    }

    void takeBack() {
        const int folder = target_.folder.number();
        exists_ = !renameExclusively(calls_, folder, target_.name, folder, name_);
    }

private:
    const SystemCalls& calls_;
    const ItemPlace& target_;
    std::string name_ = temporaryName();
    bool exists_ = false;
};

std::error_code moveByCopy(const SystemCalls& calls, const ItemPlace& source, const struct stat& status,
                           const ItemPlace& target) {
    PendingCopy copy(calls, target);
    if (const auto error = copy.make(CopyPurpose::move, source, status)) return error;
    if (const auto error = copy.flush()) return error;
    if (const auto error = copy.compareWith(source)) return error;
    if (const auto error = copy.putInPlace()) return error;
    // Removing a tree takes many steps and renaming it takes one: the original is either in its place and
    // whole, or gone.
    const int folder = source.folder.number();
    const std::string goneName = temporaryName();
    if (const auto error = renameExclusively(calls, folder, source.name, folder, goneName)) {
        copy.takeBack();
        return error;
    }
    removeTree(calls, folder, goneName);
    return {};
}

/// Makes or enters the folders of a path one after the other and remembers which of them it made.
class FolderChain {
public:
    FolderChain(const SystemCalls& calls, mode_t mode) : calls_(calls), mode_(mode) {}

    std::error_code make(const std::string& path) {
        const std::error_code error = makeAll(path);
        if (error) {
            for (auto made = made_.rbegin(); made != made_.rend(); ++made) {
                ::unlinkat(made->folder.number(), made->name.c_str(), AT_REMOVEDIR);
            }
        }
        return error;
    }

private:
    std::error_code makeAll(const std::string& path) {
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

    std::error_code makeOne(const FileDescriptor& folder, const std::string& name) {
        FileDescriptor kept = open(folder.number(), ".");
        if (!kept) return lastError();
        if (calls_("mkdirat", [&] { return ::mkdirat(folder.number(), name.c_str(), mode_); }) == 0) {
            made_.push_back({std::move(kept), name});
        } else if (errno != EEXIST) {
            return lastError();
        }
        return {};
    }

    FileDescriptor open(int folder, const std::string& name) const {
        return FileDescriptor(calls_("openat", [&] { return ::openat(folder, name.c_str(), passingFlags); }));
    }

    const SystemCalls& calls_;
    mode_t mode_;
    std::vector<ItemPlace> made_;
};

}  // namespace

std::error_code FileOperations::copyItem(const std::string& from, const std::string& to) const {
    const Result<ItemPlace> source = placeOf(calls_, from);
    if (!source) return source.error();
    const Result<ItemPlace> target = placeOf(calls_, to);
    if (!target) return target.error();
    const Result<struct stat> status = statusOf(calls_, source.value().folder.number(), source.value().name);
    if (!status) return status.error();
    if (const auto error = requireFree(calls_, target.value().folder.number(), target.value().name))
        return error;
    if (const auto error = refuseCopyIntoItself(calls_, status.value(), target.value())) return error;
    PendingCopy copy(calls_, target.value());
    if (const auto error = copy.make(CopyPurpose::copy, source.value(), status.value())) return error;
    return copy.putInPlace();
}

std::error_code FileOperations::moveItem(const std::string& from, const std::string& to) const {
    const Result<ItemPlace> source = placeOf(calls_, from);
    if (!source) return source.error();
    const Result<ItemPlace> target = placeOf(calls_, to);
    if (!target) return target.error();
    const int folder = source.value().folder.number();
    const int newFolder = target.value().folder.number();
    const std::string& name = source.value().name;
    const std::string& newName = target.value().name;
    const Result<struct stat> status = statusOf(calls_, folder, name);
    if (!status) return status.error();
    if (const auto error = refuseCopyIntoItself(calls_, status.value(), target.value())) return error;

    const std::error_code error = renameExclusively(calls_, folder, name, newFolder, newName);
    if (error == std::errc::cross_device_link) {
        if (const auto taken = requireFree(calls_, newFolder, newName)) return taken;
        return moveByCopy(calls_, source.value(), status.value(), target.value());
    }
    if (error == std::errc::file_exists && isSameEntry(calls_, source.value(), target.value())) {
        const int answer =
            calls_("renameat", [&] { return ::renameat(folder, name.c_str(), newFolder, newName.c_str()); });
        return answer == 0 ? std::error_code() : lastError();
    }
    return error;
}

std::error_code FileOperations::createDirectory(const std::string& path, mode_t mode) const {
    if (path.empty()) return std::make_error_code(std::errc::no_such_file_or_directory);
    return FolderChain(calls_, mode).make(path);
}

}  // namespace vantrel
