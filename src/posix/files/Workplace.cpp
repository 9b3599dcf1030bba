#include "posix/files/Workplace.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <vector>

#include "base/SystemCall.h"
#include "posix/ProcessMark.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/Trees.h"
#include "posix/files/VolumeKind.h"

namespace vantrel {

namespace {

constexpr mode_t everybodyElse = 077;
constexpr uid_t nobody = 65534;  // how servers show the root of another machine

/// Whether an open folder can be the one that this process has just made in `parent`.
bool isOwn(int parent, int folder) {
    struct stat status {
    }, around{};
    if (uninterrupted([&] { return ::fstat(folder, &status); }) != 0 ||
        uninterrupted([&] { return ::fstat(parent, &around); }) != 0 || status.st_dev != around.st_dev) {
        return false;
    }
    const bool isOurs = status.st_uid == ::geteuid();
    if (volumeKindOf(folder) == VolumeKind::native) return isOurs && (status.st_mode & everybodyElse) == 0;
    // On such a file system everything may seem to belong to one user and to be open to all.
    return isOurs || status.st_uid == around.st_uid || status.st_uid == nobody;
}

}  // namespace

std::string_view Workplace::prefixOf(Purpose purpose) {
    return purpose == Purpose::copy ? ".vantrel-copy-" : ".vantrel-original-";
}

Result<Workplace> Workplace::make(int folder, Purpose purpose) {
    const ItemReference place{folder, std::string(prefixOf(purpose)) + processMark()};
    const auto makeFolder = [&] { return ::mkdirat(place.folder, place.name.c_str(), 0700); };
    if (const std::error_code error = outcomeOf(makeFolder)) return error;
    Workplace made(purpose, place);
    if (const std::error_code error = made.open()) return error;
    return made;
}

std::error_code Workplace::open() {
    FileDescriptor opened = openItem(place_, O_RDONLY | O_DIRECTORY);
    if (!opened) return lastError();
    if (!isOwn(place_.folder, opened.number())) return std::make_error_code(std::errc::permission_denied);
    own_ = std::move(opened);
    // A sign of life for others; the name tells the same where locks do not work.
    (void)uninterrupted([&] { return ::flock(own_.number(), LOCK_EX | LOCK_NB); });
    // The access lists inherited from the folder around are not meant for a copy, which has its own.
    for (const char* const list : {"system.posix_acl_default", "system.posix_acl_access"})
        ::fremovexattr(own_.number(), list);
    reserve_ = FileDescriptor(::fcntl(own_.number(), F_DUPFD_CLOEXEC, 0));
    return reserve_ ? std::error_code() : lastError();
}

void Workplace::remove() {
    reserve_.close();
    if (place_.name.empty()) return;
    // A passing error, such as a shortage of descriptors, must not leave anything behind. A later operation
    // clears away what does stay.
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (own_ && purpose_ == Purpose::copy) (void)removeContents(own_.number());
        if (!unlinkItem(place_, AT_REMOVEDIR)) break;
    }
    place_.name.clear();
    own_.close();
}

}  // namespace vantrel
