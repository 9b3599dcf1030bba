#include "model/engine/ContentsChange.h"

#include <algorithm>
#include <utility>

#include "base/Paths.h"

namespace vantrel {

namespace {

bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return path == folder || paths::isBelow(path, folder);
}

bool reaches(const ContentsChange::Item& item, std::string_view path, const FolderPlace& place) {
    if (isAtOrBelow(path, item.path)) return true;
    const auto isItem = [&](const FileIdentity& folder) {
        return std::ranges::find(item.identities, folder) != item.identities.end();
    };
    return (place.identity && isItem(*place.identity)) ||
           (place.above && std::ranges::any_of(*place.above, isItem));
}

}  // namespace

ContentsChange::ContentsChange(std::vector<Item> items, std::optional<Renaming> renaming)
    : items_(std::move(items)), renaming_(std::move(renaming)) {
    for (Item& item : items_) {
        item.path = paths::normalized(item.path);
        above_.insert(above_.end(), item.above.begin(), item.above.end());
        item.above.clear();
    }
    std::ranges::sort(above_);
}

bool ContentsChange::outdates(std::string_view path, const FolderPlace& place) const {
    return happenedIn(path, place) ||
           std::ranges::any_of(items_, [&](const Item& item) { return reaches(item, path, place); });
}

bool ContentsChange::takesAway(std::string_view path, const FolderPlace& place) const {
    return !happenedIn(path, place) && std::ranges::any_of(items_, [&](const Item& item) {
        return item.afterwards == Afterwards::gone && reaches(item, path, place);
    });
}

bool ContentsChange::happenedIn(std::string_view folder, const FolderPlace& place) const {
    return (place.identity && std::ranges::binary_search(above_, *place.identity)) ||
           std::ranges::any_of(items_, [&](const Item& item) { return paths::isBelow(item.path, folder); });
}

std::vector<FileIdentity> ContentsChange::folders() const {
    std::vector<FileIdentity> all = above_;
    for (const Item& item : items_) all.insert(all.end(), item.identities.begin(), item.identities.end());
    return all;
}

bool ContentsChange::isInPart() const {
    return std::ranges::any_of(items_,
                               [](const Item& item) { return item.afterwards == Afterwards::inPart; });
}

std::optional<std::string> ContentsChange::newPathOf(std::string_view path) const {
    if (!renaming_ || !isAtOrBelow(path, renaming_->from)) return std::nullopt;
    return renaming_->to + std::string(path.substr(renaming_->from.size()));
}

}  // namespace vantrel
