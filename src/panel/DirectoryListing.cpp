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

bool isHiddenName(std::string_view name) {
    return name.starts_with('.');
}

std::shared_ptr<FileItem> makeItem(const std::string& folder, DirectoryEntry entry, FileTime now) {
    const bool isDirectory = entry.target == PathTarget::directory;
    const bool isHidden = isHiddenName(entry.name);
    std::string path = paths::appending(folder, entry.name);
    FileItemFields fields{
        .name = std::move(entry.name),
        .path = std::move(path),
        .isDirectory = isDirectory,
        .isHidden = isHidden,
        .vantrelState = isDirectory ? VantrelState(state::NotCalculated{}) : VantrelState(state::Parent{}),
        .modDate = now};
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
    list.reserve(list.size() + contents->size());
    for (DirectoryEntry& entry : *contents) {
        if (entry.target != PathTarget::missing) list.push_back(makeItem(path, std::move(entry), now));
    }
    return list;
}

}  // namespace vantrel
