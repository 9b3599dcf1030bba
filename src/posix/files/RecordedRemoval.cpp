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
    // Read-only folders are emptied too. If this is refused, the next steps fail and say so.
    if ((entry.state.mode & ownersBits) != ownersBits) {
        (void)uninterrupted(
            [&] { return ::fchmodat(original_.current(), name.c_str(), ownersBits, AT_SYMLINK_NOFOLLOW); });
    }
    if (const std::error_code error = enterBoth(entry)) return error;
    open_.push_back(&entry);
    return {};
}

std::error_code RecordedRemoval::leave(const TreeRecord::Entry& entry) {
    open_.pop_back();
    if (const std::error_code error = leaveBoth()) return error;
    return unlink(originalOf(entry), AT_REMOVEDIR);
}

std::error_code RecordedRemoval::leaf(const TreeRecord::Entry& entry) {
    Subject subject{entry, {}, false, {}};
    const std::error_code error = lookAt(subject);
    const ItemReference item = originalOf(entry);
    // An item that somebody else has removed need not be removed.
    if (error) return isGone(item) ? std::error_code() : error;
    if (outOfReach_.folder < 0) {
        if (const std::error_code changed = lookAgain(subject, item)) return changed;
        return unlink(item);
    }
    const ItemReference there = placeOutOfReach(entry);
    if (const std::error_code refused = renameExclusively(item, there))
        return isGone(item) ? std::error_code() : refused;
    std::error_code reason = lookAgain(subject, there);
    // On NFS a file that is removed while open stays for a while under another name.
    if (!subject.isLeased) subject.file.close();
    if (!reason) reason = unlink(there);
    // Tried twice, so that a passing error does not cost the item its place.
    if (reason && renameToFreeName(there, item)) (void)renameToFreeName(there, item);
    return reason;
}

/// Checks an item before it is touched. Nobody may have it open for writing, and from here on nobody can open
/// it so.
std::error_code RecordedRemoval::lookAt(Subject& subject) const {
    const ItemState& recorded = subject.entry.state;
    const ItemReference item = originalOf(subject.entry);
    if (recorded.isFile()) {
        subject.file = openItem(item, readingFlags);
        if (!subject.file) return lastError();
        const LeaseAnswer answer = takeLease(subject.file.number());
        if (answer == LeaseAnswer::hasWriter) return busy();
        subject.isLeased = answer == LeaseAnswer::held;
    }
    const Result<struct stat> status = statusOf(item);
    if (!status) return status.error();
    subject.status = *status;
    const ItemState now = ItemState::of(subject.status);
    // Removing another name of the same file has changed it.
    const bool isSame = recorded.names > 1 ? recorded.isSameButForName(now) : recorded.isUnchanged(now);
    return isSame ? std::error_code() : busy();
}

/// Checks it again where nobody else can reach it any more.
std::error_code RecordedRemoval::lookAgain(const Subject& subject, const ItemReference& place) const {
    const Result<struct stat> status = statusOf(place);
    if (!status) return status.error();
    if (!isSameFile(*status, subject.status) ||
        !subject.entry.state.isSameButForName(ItemState::of(*status))) {
        return busy();
    }
    if (!subject.file) return {};
    const int file = subject.file.number();
    struct stat opened {};
    if (uninterrupted([&] { return ::fstat(file, &opened); }) != 0) return lastError();
    if (!isSameFile(opened, *status)) return busy();
    if (isTop(subject.entry) && extendedAttributesOf(file) != record_.topAttributes) return busy();
    // Without a lease, only the content itself shows a change between the two checks.
    if (subject.entry.isUncertain || (!subject.isLeased && isTop(subject.entry))) {
        if (const std::error_code error = compareContent(file, subject.entry)) return error;
    }
    return subject.isLeased && !isLeaseHeld(file) ? busy() : std::error_code();
}

ItemReference RecordedRemoval::placeOutOfReach(const TreeRecord::Entry& entry) const {
    if (isTop(entry)) return outOfReach_;
    // The name of the folder set aside is already taken there.
    return {outOfReach_.folder, entry.name == originalTop_.name ? "removed" : entry.name};
}

std::error_code RecordedRemoval::unlink(const ItemReference& item, int flags) {
    if (const std::error_code error = unlinkItem(item, flags)) return error;
    hasRemovedAny_ = true;
    return {};
}

/// Gives the entered folders their modes back, and their dates if nothing was removed. What fails is ignored:
/// the removal has failed already.
void RecordedRemoval::restoreFolders() {
    for (; !open_.empty(); open_.pop_back()) {
        const ItemState& state = open_.back()->state;
        const int folder = original_.current();
        if ((state.mode & ownersBits) != ownersBits)
            (void)uninterrupted([&] { return ::fchmod(folder, state.mode & 07777u); });
        const std::array<timespec, 2> times{timespec{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, state.modified};
        if (!hasRemovedAny_) (void)uninterrupted([&] { return ::futimens(folder, times.data()); });
        if (original_.leave()) return;
    }
}

}  // namespace vantrel
