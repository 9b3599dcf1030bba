#include "platform/posix/FileCopy.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <string_view>
#include <vector>

#include "platform/posix/FileContentCopy.h"
#include "platform/posix/ItemPlace.h"

namespace vantrel {

namespace {

constexpr mode_t ordinaryBits = 01777;
constexpr mode_t identityBits = 06000;  // set user and group

std::error_code outcome(int answer) {
    return answer == 0 ? std::error_code() : lastError();
}

/// A file system without this kind of attribute is no reason to refuse the copy.
std::error_code unlessUnsupported(const std::error_code& error) {
    const bool isUnsupported = error == std::errc::operation_not_supported ||
                               error == std::errc::operation_not_permitted ||
                               error == std::errc::function_not_supported;
    return isUnsupported ? std::error_code() : error;
}

std::array<timespec, 2> timesOf(const struct stat& status) {
    return {status.st_atim, status.st_mtim};
}

/// Only root may give files away, but everybody may give them to a group of theirs.
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

std::error_code copyExtendedAttribute(const SystemCalls& calls, int from, int to, const char* name) {
    std::vector<char> value(65536);  // the most that Linux allows, xattr(7)
    const ssize_t size =
        calls("fgetxattr", [&] { return ::fgetxattr(from, name, value.data(), value.size()); });
    if (size < 0) return unlessUnsupported(lastError());
    return unlessUnsupported(outcome(calls("fsetxattr", [&] {
        return ::fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0);
    })));
}

std::error_code copyExtendedAttributes(const SystemCalls& calls, int from, int to) {
    std::vector<char> names(65536);
    const ssize_t size = calls("flistxattr", [&] { return ::flistxattr(from, names.data(), names.size()); });
    if (size < 0) return unlessUnsupported(lastError());
    const std::string_view all(names.data(), static_cast<std::size_t>(size));
    for (std::size_t begin = 0; begin < all.size();) {
        const std::string name(all.substr(begin, all.find('\0', begin) - begin));
        begin += name.size() + 1;
        if (!isCopiedAttribute(name)) continue;
        if (const std::error_code error = copyExtendedAttribute(calls, from, to, name.c_str())) return error;
    }
    return {};
}

struct LeafCopy {
    const SystemCalls& calls;
    int folder;
    const std::string& name;
    const struct stat& status;
    int newFolder;
    const std::string& newName;

    std::error_code file() const {
        const FileDescriptor from(calls("openat", [&] {
            return ::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        }));
        if (!from) return lastError();
        struct stat opened {};
        if (calls("fstat", [&] { return ::fstat(from.number(), &opened); }) != 0) return lastError();
        if (!isSameFile(opened, status)) return std::make_error_code(std::errc::no_such_file_or_directory);
        FileDescriptor to(calls("openat", [&] {
            return ::openat(newFolder, newName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                            0600);
        }));
        if (!to) return lastError();
        if (const auto error = copyContent(calls, from.number(), to.number(), opened)) return error;
        if (const auto error = copyAttributes(calls, from.number(), opened, to.number())) return error;
        // Some file systems tell of a full disk only now. Not through the gate: it must not be repeated.
        return outcome(::close(to.release()));
    }

    std::error_code link() const {
        std::vector<char> target(PATH_MAX);
        const ssize_t size = calls(
            "readlinkat", [&] { return ::readlinkat(folder, name.c_str(), target.data(), target.size()); });
        if (size < 0) return lastError();
        const std::string text(target.data(), static_cast<std::size_t>(size));
        if (calls("symlinkat", [&] { return ::symlinkat(text.c_str(), newFolder, newName.c_str()); }) != 0) {
            return lastError();
        }
        copyOwner();
        return times();
    }

    std::error_code node() const {
        const mode_t kind = status.st_mode & S_IFMT;
        if (calls("mknodat",
                  [&] { return ::mknodat(newFolder, newName.c_str(), kind | 0600, status.st_rdev); }) != 0) {
            return lastError();
        }
        copyOwner();
        const Result<struct stat> made = statusOf(calls, newFolder, newName);
        if (!made) return made.error();
        const mode_t mode = permissionsFor(status, made.value());
        const auto error = outcome(calls(
            "fchmodat", [&] { return ::fchmodat(newFolder, newName.c_str(), mode, AT_SYMLINK_NOFOLLOW); }));
        return unlessUnsupported(error) ? error : times();
    }

    void copyOwner() const {
        setOwner(status, [&](uid_t user, gid_t group) {
            return calls("fchownat", [&] {
                return ::fchownat(newFolder, newName.c_str(), user, group, AT_SYMLINK_NOFOLLOW);
            });
        });
    }

    std::error_code times() const {
        const auto times = timesOf(status);
        return unlessUnsupported(outcome(calls("utimensat", [&] {
            return ::utimensat(newFolder, newName.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
        })));
    }
};

}  // namespace

std::error_code copyAttributes(const SystemCalls& calls, int from, const struct stat& status, int to) {
    if (const std::error_code error = copyExtendedAttributes(calls, from, to)) return error;
    struct stat copy {};
    const auto lookAtCopy = [&] { return calls("fstat", [&] { return ::fstat(to, &copy); }) == 0; };
    if (!lookAtCopy()) return lastError();
    if (status.st_uid != copy.st_uid || status.st_gid != copy.st_gid) {
        setOwner(status, [&](uid_t user, gid_t group) {
            return calls("fchown", [&] { return ::fchown(to, user, group); });
        });
        if (!lookAtCopy()) return lastError();
    }
    const mode_t mode = permissionsFor(status, copy);
    if (const auto error = unlessUnsupported(outcome(calls("fchmod", [&] { return ::fchmod(to, mode); })))) {
        return error;
    }
    const auto times = timesOf(status);
    return unlessUnsupported(outcome(calls("futimens", [&] { return ::futimens(to, times.data()); })));
}

std::error_code copyLeaf(const SystemCalls& calls, int folder, const std::string& name,
                         const struct stat& status, int newFolder, const std::string& newName) {
    const LeafCopy copy{calls, folder, name, status, newFolder, newName};
    if (S_ISREG(status.st_mode)) return copy.file();
    if (S_ISLNK(status.st_mode)) return copy.link();
    return copy.node();
}

}  // namespace vantrel
