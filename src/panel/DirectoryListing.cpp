#include "panel/DirectoryListing.h"

#include <chrono>
#include <cstdint>
#include <utility>

#include "base/Paths.h"
#include "platform/FileManager.h"
#include "platform/StandardOutput.h"

namespace vantrel {

namespace {

constexpr std::uint32_t anyExecuteBit = 0111;

// Every folder that was shown is remembered with those around it: so that a chain of thousands, followed down
// by hand, does not fill the memory, the farthest are left out.
constexpr std::size_t mostAncestors = 128;

bool isHiddenName(std::string_view name) {
    return name.starts_with('.');
}

std::shared_ptr<const Ancestry> ancestryOf(FileManager& files, const std::string& folder) {
    Ancestry above = files.ancestryOf(folder);
    if (above.size() > mostAncestors) above.resize(mostAncestors);
    above.shrink_to_fit();
    return std::make_shared<const Ancestry>(std::move(above));
}

// Of a folder that is shown through a link only itself is known: the folders around it are others.
std::unique_ptr<const FolderPlace> placeOf(const DirectoryEntry& entry,
                                           const std::shared_ptr<const Ancestry>& above) {
    const bool isLink = entry.attributes && entry.attributes->link == LinkKind::symbolicLink;
    return std::make_unique<const FolderPlace>(entry.identity, isLink ? nullptr : above, entry.changed);
}

std::shared_ptr<FileItem> makeItem(const std::string& folder, DirectoryEntry entry, FileTime now,
                                   const std::shared_ptr<const Ancestry>& above) {
    const bool isDirectory = entry.target == PathTarget::directory;
    const bool isHidden = isHiddenName(entry.name);
    std::string path = paths::appending(folder, entry.name);
    FileItemFields fields{
        .name = std::move(entry.name),
        .path = std::move(path),
        .isDirectory = isDirectory,
        .isHidden = isHidden,
        .vantrelState = isDirectory ? VantrelState(state::NotCalculated{}) : VantrelState(state::Parent{}),
        .modDate = now,
        .place = isDirectory ? placeOf(entry, above) : nullptr};
    if (entry.attributes) {
        fields.isExecutable = (entry.attributes->posixPermissions & anyExecuteBit) != 0;
        fields.isSymlink = entry.attributes->link == LinkKind::symbolicLink;
        fields.size = entry.attributes->size;
        fields.modDate = entry.attributes->modificationDate;
    }
    return std::make_shared<FileItem>(std::move(fields));
}

}  // namespace

ItemList listDirectory(FileManager& files, StandardOutput& output, const std::string& path,
                       HiddenFiles hidden) {
    ItemList list;
    if (path != "/") list.push_back(std::make_shared<FileItem>(FileItem::parentDirectory(path)));

    auto contents = files.contentsOfDirectory(
        path, [hidden](std::string_view name) { return hidden == HiddenFiles::show || !isHiddenName(name); });
    if (!contents) {
        output.writeLine("Error reading directory " + path + ": " + contents.error().message());
        return list;
    }
    const FileTime now = std::chrono::system_clock::now();
    const std::shared_ptr<const Ancestry> above = ancestryOf(files, path);
    list.reserve(list.size() + contents->size());
    for (DirectoryEntry& entry : *contents) {
        if (entry.target != PathTarget::missing) list.push_back(makeItem(path, std::move(entry), now, above));
    }
    return list;
}

}  // namespace vantrel
