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

/// Between the making of a workplace and its lock there is a moment; nobody needs so long for it.
constexpr std::time_t longestMoment = 60;  // seconds

/// A workplace, as far as its name goes.
struct Leftover {
    std::string name;
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

void clear(int folder, VolumeKind kind, const Leftover& leftover) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const FileDescriptor place(
        uninterrupted([&] { return ::openat(folder, leftover.name.c_str(), flags, 0); }));
    struct stat status {};
    if (!place || uninterrupted([&] { return ::fstat(place.number(), &status); }) != 0) return;
    if (!isOwn(status, kind) ||
        uninterrupted([&] { return ::flock(place.number(), LOCK_EX | LOCK_NB); }) != 0) {
        return;
    }
    if (leftover.owner != MarkedProcess::ended && !isOld(status)) return;
    const Result<struct stat> named = statusOf(folder, leftover.name);
    if (!named || !isSameFile(named.value(), status)) return;
    if (leftover.purpose == Workplace::Purpose::copy) {
        removeContents(place.number());
    } else if (const auto names = namesIn(place.number())) {
        for (const std::string& name : names.value())
            (void)renameToFreeName(place.number(), name, folder, name);
    }
    uninterrupted([&] { return ::unlinkat(folder, leftover.name.c_str(), AT_REMOVEDIR); });
}

/// An original set aside under a hidden name. It carries no lock, so the process must be known to have ended.
void giveNameBack(int folder, const std::string& hidden) {
    const std::size_t equals = hidden.find('=');
    if (equals == std::string::npos || equals + 1 == hidden.size()) return;
    const std::string_view mark = std::string_view(hidden).substr(0, equals).substr(asidePrefix.size());
    if (processOf(mark) == MarkedProcess::ended)
        (void)renameToFreeName(folder, hidden, folder, hidden.substr(equals + 1));
}

void clear(int folder, VolumeKind kind, const std::string& name) {
    if (name.starts_with(asidePrefix)) return giveNameBack(folder, name);
    for (const auto purpose : {Workplace::Purpose::copy, Workplace::Purpose::original}) {
        const std::string_view prefix = Workplace::prefixOf(purpose);
        if (!name.starts_with(prefix)) continue;
        const MarkedProcess owner = processOf(std::string_view(name).substr(prefix.size()));
        if (owner != MarkedProcess::running) clear(folder, kind, Leftover{name, purpose, owner});
    }
}

/// Names that may be ours. Not all names: a folder may have very many.
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
    FileDescriptor listed(
        uninterrupted([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!listed) return;
    const VolumeKind kind = volumeKindOf(listed.number());
    if (kind == VolumeKind::unknown) return;
    for (const std::string& name : ourNamesIn(listed.release())) clear(folder, kind, name);
}

std::string nameAside(const std::string& name) {
    return (std::string(asidePrefix) + processMark() + "=" + name).substr(0, NAME_MAX);
}

}  // namespace vantrel
