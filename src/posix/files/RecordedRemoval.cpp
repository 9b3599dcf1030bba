#include "posix/files/RecordedRemoval.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <utility>

#include "base/SystemCall.h"
#include "posix/files/ExclusiveRename.h"
#include "posix/files/FileCopy.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/ReadLease.h"

namespace vantrel {

namespace {

constexpr mode_t ownersBits = 0700;

}  // namespace

std::error_code RecordedRemoval::run() {
    const std::error_code error = record_.visit(*this);
    if (error) restoreFolders();
    return error;
}

std::error_code RecordedRemoval::enter(const TreeRecord::Entry& entry, std::size_t) {
    const std::string& name = nameOf(entry);
    // Read-only folders are emptied too. Where this is refused, what follows says so.
    if ((entry.state.mode & ownersBits) != ownersBits) {
        uninterrupted(
            [&] { return ::fchmodat(original_.current(), name.c_str(), ownersBits, AT_SYMLINK_NOFOLLOW); });
    }
    if (const std::error_code error = enterBoth(entry)) return error;
    open_.push_back(&entry);
    return {};
}

std::error_code RecordedRemoval::leave(const TreeRecord::Entry& entry) {
    open_.pop_back();
    if (const std::error_code error = leaveBoth()) return error;
    return unlink(original_.current(), nameOf(entry), AT_REMOVEDIR);
}

std::error_code RecordedRemoval::leaf(const TreeRecord::Entry& entry) {
    Subject subject{entry, {}, false, {}};
    const std::error_code error = lookAt(subject);
    const int folder = original_.current();
    const std::string& name = nameOf(entry);
    // What somebody else has removed needs no removing.
    if (error) return isGone(folder, name) ? std::error_code() : error;
    if (outOfReach_ < 0) {
        if (const std::error_code changed = lookAgain(subject, folder, name)) return changed;
        return unlink(folder, name, 0);
    }
    const std::string there = nameThere(entry);
    if (const auto refused = renameExclusively(folder, name, outOfReach_, there))
        return isGone(folder, name) ? std::error_code() : refused;
    std::error_code reason = lookAgain(subject, outOfReach_, there);
    // A file that is removed while it is open stays under another name for a while on NFS.
    if (!subject.isLeased) subject.file.close();
    if (!reason) reason = unlink(outOfReach_, there, 0);
    // Asked twice, for an error that passes must not cost the item its place.
    if (reason && !renameToFreeName(outOfReach_, there, folder, name))
        (void)renameToFreeName(outOfReach_, there, folder, name);
    return reason;
}

/// Before it is touched. Nobody must have it open for writing, and from here on nobody gets it so.
std::error_code RecordedRemoval::lookAt(Subject& subject) const {
    const ItemState& recorded = subject.entry.state;
    const int folder = original_.current();
    const std::string& name = nameOf(subject.entry);
    if (recorded.isFile()) {
        constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        subject.file =
            FileDescriptor(uninterrupted([&] { return ::openat(folder, name.c_str(), flags, 0); }));
        if (!subject.file) return lastError();
        const LeaseAnswer answer = takeLease(subject.file.number());
        if (answer == LeaseAnswer::hasWriter) return busy();
        subject.isLeased = answer == LeaseAnswer::held;
    }
    const Result<struct stat> status = statusOf(folder, name);
    if (!status) return status.error();
    subject.status = status.value();
    const ItemState now = ItemState::of(subject.status);
    // Removing another name of the file has changed it.
    const bool isSame = recorded.names > 1 ? recorded.isSameButForName(now) : recorded.isUnchanged(now);
    return isSame ? std::error_code() : busy();
}

/// Where nobody else reaches it any more.
std::error_code RecordedRemoval::lookAgain(const Subject& subject, int folder,
                                           const std::string& name) const {
    const Result<struct stat> status = statusOf(folder, name);
    if (!status) return status.error();
    if (!isSameFile(status.value(), subject.status) ||
        !subject.entry.state.isSameButForName(ItemState::of(status.value()))) {
        return busy();
    }
    if (!subject.file) return {};
    const int file = subject.file.number();
    struct stat opened {};
    if (uninterrupted([&] { return ::fstat(file, &opened); }) != 0) return lastError();
    if (!isSameFile(opened, status.value())) return busy();
    if (isTop(subject.entry) && extendedAttributesOf(file) != record_.topAttributes) return busy();
    // Without a lease nothing but the content itself tells of a change between the two looks.
    if (subject.entry.isUncertain || (!subject.isLeased && isTop(subject.entry))) {
        if (const std::error_code error = compareContent(file, subject.entry)) return error;
    }
    return subject.isLeased && !isLeaseHeld(file) ? busy() : std::error_code();
}

std::string RecordedRemoval::nameThere(const TreeRecord::Entry& entry) const {
    if (isTop(entry)) return topNameThere_;
    // The folder set aside stands there as well.
    return entry.name == originalTop_.name ? "removed" : entry.name;
}

std::error_code RecordedRemoval::unlink(int folder, const std::string& name, int flags) {
    if (uninterrupted([&] { return ::unlinkat(folder, name.c_str(), flags); }) != 0) return lastError();
    hasRemovedAny_ = true;
    return {};
}

/// Those that were entered look as before again.
void RecordedRemoval::restoreFolders() {
    for (; !open_.empty(); open_.pop_back()) {
        const ItemState& state = open_.back()->state;
        const int folder = original_.current();
        if ((state.mode & ownersBits) != ownersBits)
            uninterrupted([&] { return ::fchmod(folder, state.mode & 07777u); });
        const std::array<timespec, 2> times{timespec{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, state.modified};
        if (!hasRemovedAny_) uninterrupted([&] { return ::futimens(folder, times.data()); });
        if (original_.leave()) return;
    }
}

}  // namespace vantrel
