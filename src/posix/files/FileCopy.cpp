#include "posix/files/FileCopy.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <string_view>
#include <vector>

#include "base/SystemCall.h"
#include "posix/files/FileContentCopy.h"
#include "posix/files/FolderStack.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/ReadLease.h"

namespace vantrel {

namespace {

constexpr mode_t ordinaryBits = 01777;
constexpr mode_t identityBits = 06000;  // set user and group

/// A file system without this kind of attribute is no reason to refuse the copy.
[[nodiscard]] std::error_code unlessUnsupported(const std::error_code& error) {
    const bool isUnsupported = error == std::errc::operation_not_supported ||
                               error == std::errc::operation_not_permitted ||
                               error == std::errc::function_not_supported;
    return isUnsupported ? std::error_code() : error;
}

std::array<timespec, 2> timesOf(const struct stat& status) {
    return {status.st_atim, status.st_mtim};
}

/// Only root may give files away, but everybody may pass theirs on to another of their own groups.
template <class ChangeOwner>
void setOwner(const struct stat& original, ChangeOwner changeOwner) {
    if (changeOwner(original.st_uid, original.st_gid) != 0)
        changeOwner(static_cast<uid_t>(-1), original.st_gid);
}

/// A program that runs as its owner must not become one that runs as somebody else.
mode_t permissionsFor(const struct stat& original, const struct stat& copy) {
    const bool keepsIdentity = original.st_uid == copy.st_uid && original.st_gid == copy.st_gid;
    return original.st_mode & (keepsIdentity ? ordinaryBits | identityBits : ordinaryBits);
}

/// The user's own attributes and the access lists; the system's labels are its own business.
bool isCopiedAttribute(std::string_view name) {
    return name.starts_with("user.") || name.starts_with("system.posix_acl_");
}

constexpr std::size_t longestValue = 65536;  // the most that Linux allows, xattr(7)

/// Calls `take` with the name of each extended attribute of an open item that a copy keeps.
template <class Take>
[[nodiscard]] std::error_code forEachAttribute(int item, Take take) {
    ssize_t size = uninterrupted([&] { return ::flistxattr(item, nullptr, 0); });
    if (size == 0) return {};
    std::vector<char> names(longestValue);
    if (size > 0) size = uninterrupted([&] { return ::flistxattr(item, names.data(), names.size()); });
    if (size < 0) return unlessUnsupported(lastError());
    const std::string_view all(names.data(), static_cast<std::size_t>(size));
    for (std::size_t begin = 0; begin < all.size();) {
        const std::string name(all.substr(begin, all.find('\0', begin) - begin));
        begin += name.size() + 1;
        if (!isCopiedAttribute(name)) continue;
        if (const std::error_code error = take(name)) return error;
    }
    return {};
}

[[nodiscard]] std::error_code copyExtendedAttributes(int from, int to) {
    return forEachAttribute(from, [&](const std::string& name) -> std::error_code {
        std::vector<char> value(longestValue);
        const ssize_t size =
            uninterrupted([&] { return ::fgetxattr(from, name.c_str(), value.data(), value.size()); });
        if (size < 0) return unlessUnsupported(lastError());
        return unlessUnsupported(outcomeOf(
            [&] { return ::fsetxattr(to, name.c_str(), value.data(), static_cast<std::size_t>(size), 0); }));
    });
}

struct LeafCopy {
    const CopyTask& task;
    const ItemReference& original;
    const struct stat& status;
    const ItemReference& copy;

    [[nodiscard]] std::error_code file() const {
        const FileDescriptor from = open(original, readingFlags);
        if (!from) return lastError();
        struct stat opened {};
        if (uninterrupted([&] { return ::fstat(from.number(), &opened); }) != 0) return lastError();
        if (!isSameFile(opened, status)) return std::make_error_code(std::errc::no_such_file_or_directory);
        if (task.isMove()) task.record->add(original.name, opened, mayChangeUnseen(from.number(), opened));
        FileDescriptor to = open(copy, O_WRONLY | O_CREAT | O_EXCL);
        if (!to) return lastError();
        if (const auto error = copyContent(task, from.number(), to.number(), opened)) return error;
        if (const auto error = copyAttributes(from.number(), opened, to.number())) return error;
        return task.written.add(std::move(to));
    }

    /// When descriptors run out, those that only wait to be flushed make room.
    FileDescriptor open(const ItemReference& item, int flags) const {
        FileDescriptor file = openItem(item, flags);
        if (file || !isDescriptorShortage(lastError())) return file;
        if (const std::error_code error = task.written.giveUpDescriptors()) {
            errno = error.value();
            return {};
        }
        return openItem(item, flags);
    }

    /// Whether writing to the original from now on might leave its dates unchanged.
    bool mayChangeUnseen(int from, const struct stat& opened) const {
        if (takeLease(from) == LeaseAnswer::hasWriter) return true;
        endLease(from);
        return isFresh(opened, volumeKindOf(from));
    }

    [[nodiscard]] std::error_code link() const {
        const Result<std::string> target = targetOfLink(original);
        if (!target) return target.error();
        recordUnopened();
        const auto make = [&] { return ::symlinkat(target->c_str(), copy.folder, copy.name.c_str()); };
        if (const std::error_code error = outcomeOf(make)) return error;
        copyOwner();
        return times();
    }

    [[nodiscard]] std::error_code node() const {
        recordUnopened();
        const mode_t ownersKind = (status.st_mode & S_IFMT) | 0600;
        const auto make = [&] {
            return ::mknodat(copy.folder, copy.name.c_str(), ownersKind, status.st_rdev);
        };
        if (const std::error_code error = outcomeOf(make)) return error;
        copyOwner();
        const Result<struct stat> made = statusOf(copy);
        if (!made) return made.error();
        const mode_t mode = permissionsFor(status, *made);
        const auto error =
            outcomeOf([&] { return ::fchmodat(copy.folder, copy.name.c_str(), mode, AT_SYMLINK_NOFOLLOW); });
        return unlessUnsupported(error) ? error : times();
    }

    void recordUnopened() const {
        task.written.addUnopened();
        if (task.isMove()) task.record->add(original.name, status);
    }

    void copyOwner() const {
        setOwner(status, [&](uid_t user, gid_t group) {
            return uninterrupted(
                [&] { return ::fchownat(copy.folder, copy.name.c_str(), user, group, AT_SYMLINK_NOFOLLOW); });
        });
    }

    [[nodiscard]] std::error_code times() const {
        const auto times = timesOf(status);
        return unlessUnsupported(outcomeOf(
            [&] { return ::utimensat(copy.folder, copy.name.c_str(), times.data(), AT_SYMLINK_NOFOLLOW); }));
    }
};

}  // namespace

std::error_code copyAttributes(int from, const struct stat& status, int to) {
    if (const std::error_code error = copyExtendedAttributes(from, to)) return error;
    struct stat copy {};
    const auto lookAtCopy = [&] { return uninterrupted([&] { return ::fstat(to, &copy); }) == 0; };
    if (!lookAtCopy()) return lastError();
    if (status.st_uid != copy.st_uid || status.st_gid != copy.st_gid) {
        setOwner(status, [&](uid_t user, gid_t group) {
            return uninterrupted([&] { return ::fchown(to, user, group); });
        });
        if (!lookAtCopy()) return lastError();
    }
    const mode_t mode = permissionsFor(status, copy);
    if (const auto error = unlessUnsupported(outcomeOf([&] { return ::fchmod(to, mode); }))) {
        return error;
    }
    const auto times = timesOf(status);
    return unlessUnsupported(outcomeOf([&] { return ::futimens(to, times.data()); }));
}

std::string extendedAttributesOf(int item) {
    std::string all;
    const auto error = forEachAttribute(item, [&](const std::string& name) {
        std::string value(longestValue, '\0');
        const ssize_t size =
            uninterrupted([&] { return ::fgetxattr(item, name.c_str(), value.data(), value.size()); });
        value.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        all += name + '\0' + std::to_string(size) + '\0' + value;
        return std::error_code();
    });
    return error ? std::string() : all;
}

std::error_code copyLeaf(const CopyTask& task, const ItemReference& original, const struct stat& status,
                         const ItemReference& copy) {
    const LeafCopy leaf{task, original, status, copy};
    if (S_ISREG(status.st_mode)) return leaf.file();
    if (S_ISLNK(status.st_mode)) return leaf.link();
    return leaf.node();
}

}  // namespace vantrel
