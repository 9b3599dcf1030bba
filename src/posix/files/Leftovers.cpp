#include "posix/files/Leftovers.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <ctime>
#include <string_view>
#include <vector>

#include "base/SystemCall.h"
#include "posix/ProcessMark.h"
#include "posix/files/ExclusiveRename.h"
#include "posix/files/FolderStack.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/Trees.h"
#include "posix/files/VolumeKind.h"
#include "posix/files/Workplace.h"

namespace vantrel {

namespace {

constexpr std::string_view ourPrefix = ".vantrel-";
constexpr std::string_view asidePrefix = ".vantrel-aside-";
constexpr mode_t everybodyElse = 077;

/// A workplace is locked a moment after it is made; no live process takes this long in between.
constexpr std::time_t longestMoment = 60;  // seconds

/// A workplace, as far as its name goes.
struct Leftover {
    ItemReference place;
    Workplace::Purpose purpose;
    MarkedProcess owner;
};

bool isOld(const struct stat& status) {
    std::timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec - status.st_ctim.tv_sec > longestMoment;
}

bool isOwn(const struct stat& status, VolumeKind kind) {
    return status.st_uid == ::geteuid() &&
           (kind == VolumeKind::foreign || (status.st_mode & everybodyElse) == 0);
}

void clear(const Leftover& leftover, VolumeKind kind) {
    const FileDescriptor opened = openItem(leftover.place, listingFlags);
    struct stat status {};
    if (!opened || uninterrupted([&] { return ::fstat(opened.number(), &status); }) != 0) return;
    const auto lock = [&] { return ::flock(opened.number(), LOCK_EX | LOCK_NB); };
    if (!isOwn(status, kind) || uninterrupted(lock) != 0) return;
    if (leftover.owner != MarkedProcess::ended && !isOld(status)) return;
    const Result<struct stat> named = statusOf(leftover.place);
    if (!named || !isSameFile(*named, status)) return;
    // The next operation will retry what fails here.
    if (leftover.purpose == Workplace::Purpose::copy) {
        (void)removeContents(opened.number());
    } else if (const auto names = namesIn(opened.number())) {
        for (const std::string& name : *names)
            (void)renameToFreeName({opened.number(), name}, {leftover.place.folder, name});
    }
    (void)unlinkItem(leftover.place, AT_REMOVEDIR);
}

/// An original set aside under a hidden name. It carries no lock, so the process must be known to have ended.
void giveNameBack(const ItemReference& hidden) {
    const std::size_t equals = hidden.name.find('=');
    if (equals == std::string::npos || equals + 1 == hidden.name.size()) return;
    const std::string_view mark = std::string_view(hidden.name).substr(0, equals).substr(asidePrefix.size());
    if (processOf(mark) == MarkedProcess::ended)
        (void)renameToFreeName(hidden, {hidden.folder, hidden.name.substr(equals + 1)});
}

void clearIfOurs(const ItemReference& item, VolumeKind kind) {
    const std::string_view name = item.name;
    if (name.starts_with(asidePrefix)) return giveNameBack(item);
    for (const auto purpose : {Workplace::Purpose::copy, Workplace::Purpose::original}) {
        const std::string_view prefix = Workplace::prefixOf(purpose);
        if (!name.starts_with(prefix)) continue;
        const MarkedProcess owner = processOf(name.substr(prefix.size()));
        if (owner != MarkedProcess::running) clear(Leftover{item, purpose, owner}, kind);
    }
}

/// Only the names that may be ours: a folder may have very many others.
std::vector<std::string> ourNamesIn(int folder) {
    std::vector<std::string> names;
    DIR* const stream = ::fdopendir(folder);
    if (stream == nullptr) {
        ::close(folder);
        return names;
    }
    while (const dirent* const entry = nextEntry(stream)) {
        if (std::string_view(entry->d_name).starts_with(ourPrefix)) names.emplace_back(entry->d_name);
    }
    ::closedir(stream);
    return names;
}

}  // namespace

void clearLeftovers(int folder) {
    FileDescriptor listed = openItem({folder, "."}, listingFlags);
    if (!listed) return;
    const VolumeKind kind = volumeKindOf(listed.number());
    if (kind == VolumeKind::unknown) return;
    for (const std::string& name : ourNamesIn(listed.release())) clearIfOurs({folder, name}, kind);
}

std::string nameAside(const std::string& name) {
    return (std::string(asidePrefix) + processMark() + "=" + name).substr(0, NAME_MAX);
}

}  // namespace vantrel
