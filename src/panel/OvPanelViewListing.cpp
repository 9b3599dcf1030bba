#include "panel/OvPanelView.h"

#include <algorithm>
#include <utility>

#include "model/VantrelEngine.h"
#include "platform/FileManager.h"
#include "platform/Paths.h"
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
    selectAfterLoading(keepSelection);
    adjustScroll();
    setNeedsDisplay();
    requestSizes();
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

void OvPanelView::selectAfterLoading(const std::optional<std::string>& keepSelection) {
    selectedIndex_ = items_.size() >= 2 && items_.front()->isParentDir ? 1 : 0;
    if (!keepSelection) return;
    const auto kept =
        std::ranges::find_if(items_, [&](const auto& item) { return item->name == *keepSelection; });
    if (kept != items_.end()) selectedIndex_ = kept - items_.begin();
}

void OvPanelView::requestSizes() {
    awaitedItems_.clear();
    std::ranges::copy_if(items_, std::back_inserter(awaitedItems_),
                         [](const auto& item) { return item->isDirectory && !item->isParentDir; });
    for (const auto& item : awaitedItems_) {
        item->vantrelState = state::Calculating{};
        requestSize(item);
    }
}

void OvPanelView::requestSize(const std::shared_ptr<FileItem>& item) {
    const auto onUpdate = [weakPanel = weak_from_this(), weakItem = std::weak_ptr(item)](
                              std::int64_t bytes, std::int64_t itemsCount, bool isComplete) {
        const auto panel = weakPanel.lock();
        const auto row = weakItem.lock();
        if (!panel || !row) return;
        const VantrelState state = isComplete ? VantrelState(state::Calculated{bytes, itemsCount})
                                              : VantrelState(state::Calculating{bytes, itemsCount});
        static_cast<OvPanelView&>(*panel).sizeDidUpdate(*row, state);
    };
    engine_.calculateVantrel(item->path, onUpdate);
}

void OvPanelView::sizeDidUpdate(FileItem& item, VantrelState state) {
    // A row that was asked for again just before its total arrived hears of the second walk too.
    if (isCalculated(item.vantrelState) && isCalculating(state)) return;
    item.vantrelState = std::move(state);
    changedSinceSort_.add(item);
    if (isCalculated(item.vantrelState) && sortField_ == SortField::size) sortAfterTotal();
    setNeedsDisplay(Redraw::inPassing);
}

bool OvPanelView::isCalculatingSizes() const {
    return std::ranges::any_of(awaitedItems_,
                               [](const auto& item) { return isCalculating(item->vantrelState); });
}

// A walk that the other panel replaced or cancelled reports nothing any more, and its rows here would spin
// for ever. What it would have reported is asked for anew, or comes from the cache.
void OvPanelView::askAgainForSilencedSizes() {
    std::erase_if(awaitedItems_, [](const auto& item) { return !isCalculating(item->vantrelState); });
    for (const auto& item : awaitedItems_) {
        if (!engine_.isCalculating(item->path)) requestSize(item);
    }
}

}  // namespace vantrel
