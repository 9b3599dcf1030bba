#include "panel/OvPanelView.h"

#include <algorithm>
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

void OvPanelView::loadDirectory(const std::optional<std::string>& keepSelection) {
    items_ = readDirectory();
    sortItems();
    cursor_.reset(static_cast<std::int64_t>(items_.size()), rowAfterLoading(keepSelection));
    setNeedsDisplay();
    sizes_.askFor(items_);
}

ItemList OvPanelView::readDirectory() {
    ItemList list;
    if (currentPath_ != "/")
        list.push_back(std::make_shared<FileItem>(FileItem::parentDirectory(currentPath_)));

    auto contents = desktop_.files.contentsOfDirectory(
        currentPath_, [this](std::string_view name) { return showHiddenFiles_ || !isHiddenName(name); });
    if (!contents) {
        desktop_.output.writeLine("Error reading directory " + currentPath_ + ": " +
                                  contents.error().message());
        return list;
    }
    const FileTime now = std::chrono::system_clock::now();
    list.reserve(list.size() + contents->size());
    for (DirectoryEntry& entry : *contents) {
        if (entry.target != PathTarget::missing)
            list.push_back(makeItem(currentPath_, std::move(entry), now));
    }
    return list;
}

std::int64_t OvPanelView::rowAfterLoading(const std::optional<std::string>& keepSelection) const {
    if (keepSelection) {
        const auto kept =
            std::ranges::find_if(items_, [&](const auto& item) { return item->name == *keepSelection; });
        if (kept != items_.end()) return kept - items_.begin();
    }
    return items_.size() >= 2 && items_.front()->isParentDir ? 1 : 0;
}

}  // namespace vantrel
