#include "walk/FolderOpener.h"

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "base/SystemCall.h"
#include "walk/RunningWalk.h"
#include "walk/WalkScheduler.h"

namespace vantrel::walking {

namespace {

// Vanished meanwhile, or something is mounted there.
bool isNoPartOfTheTree(const std::error_code& error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::cross_device_link;
}

constexpr std::chrono::milliseconds pauseWhileDescriptorsAreScarce{2};

}  // namespace

std::error_code FolderOpener::open(Visit& visit) {
    const auto error = tryOpen(visit);
    return isDescriptorShortage(error) ? retry(visit) : error;
}

// One worker at a time tries again until it has what it needs; all others finish what they have open.
std::error_code FolderOpener::retry(Visit& visit) {
    std::lock_guard lock(scheduler_.shortage());
    for (;;) {
        scheduler_.giveUpAll();
        const auto error = tryOpen(visit);
        if (!isDescriptorShortage(error)) return error;
        if (visit.folder->walk().isCancelled()) return error;
        std::this_thread::sleep_for(pauseWhileDescriptorsAreScarce);
    }
}

std::error_code FolderOpener::tryOpen(Visit& visit) {
    FolderTally* const tally = visit.folder->tally();
    KnownTotals* const known = visit.folder->walk().known();
    if (tally && known) tally->willOpen(*known);
    auto opened = openByName(*visit.folder);
    if (!opened) {
        if (tally && isNoPartOfTheTree(opened.error())) tally->isAbsent();
        return opened.error();
    }
    auto stream = reader_.beginReading(opened->number());
    if (!stream) return stream.error();
    if (tally) didOpen(*visit.folder, opened->number());
    visit.use = visit.folder->opened(std::move(*opened));
    visit.stream = std::move(*stream);
    return {};
}

// The root shows how far its file system can be trusted, and who it is.
void FolderOpener::didOpen(Folder& folder, int descriptor) {
    RunningWalk& walk = folder.walk();
    if (folder.isRoot()) walk.setTrust(reader_.trust(descriptor));
    if (walk.trust() == FolderTrust::none) return folder.dropTally();
    FolderTally& tally = *folder.tally();
    tally.didOpen();
    if (walk.trust() == FolderTrust::andInodes && !folder.isRoot()) return;
    if (const auto look = reader_.look(descriptor))
        tally.setIdentity(look->identity);
    else
        tally.hasGap();
}

Result<FileDescriptor> FolderOpener::openByName(const Folder& folder) {
    Volume& volume = folder.walk().volume();
    if (folder.isRoot()) return reader_.openRoot(folder.walk().rootPath(), volume);
    if (const FolderUse parent = folder.parent()->tryUse())
        return reader_.openFolder(parent.descriptor(), folder.name(), volume);
    auto place = reopen(*folder.parent());
    if (!place) {
        // Not that the folder is missing, but that the way to it is.
        if (folder.tally() && !isDescriptorShortage(place.error())) folder.tally()->hasGap();
        return place;
    }
    return reader_.openFolder(place->number(), folder.name(), volume);
}

// A descriptor of its own for a folder whose descriptor was given up.
Result<FileDescriptor> FolderOpener::reopen(const Folder& folder) {
    std::vector<const Folder*> missing{&folder};
    FolderUse nearest;
    for (Folder* above = folder.parent(); above; above = above->parent()) {
        nearest = above->tryUse();
        if (nearest) break;
        missing.push_back(above);
    }
    Volume& volume = folder.walk().volume();
    FileDescriptor root;
    if (!nearest) {
        auto opened = reader_.openRoot(folder.walk().rootPath(), volume);
        if (!opened) return opened;
        root = std::move(*opened);
        missing.pop_back();
    }
    std::string path;
    for (auto name = missing.rbegin(); name != missing.rend(); ++name) {
        if (!path.empty()) path += '/';
        path += (*name)->name();
    }
    if (path.empty()) path.push_back('.');
    auto opened = reader_.openBelow(nearest ? nearest.descriptor() : root.number(), path, volume);
    // A tree renamed meanwhile must not lead the walk to another folder.
    if (opened && identify(opened->number()) != folder.identity())
        return std::make_error_code(std::errc::no_such_file_or_directory);
    return opened;
}

}  // namespace vantrel::walking
