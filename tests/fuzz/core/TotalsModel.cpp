#include "fuzz/core/TotalsModel.h"

#include <algorithm>
#include <cstdint>

#include "base/Paths.h"

namespace vantrel::fuzz {

namespace {

using Item = test::FakeFileManager::Item;

// Small enough for any number of them to be added up.
std::int64_t sizeOf(const Item& file) {
    return file.entry.attributes ? std::clamp<std::int64_t>(file.entry.attributes->size, 0, 1LL << 40) : 0;
}

WalkTotals totalsIn(const Item& folder) {
    WalkTotals totals;
    for (const auto& child : folder.children) {
        const auto& attributes = child->entry.attributes;
        if (attributes && attributes->link == LinkKind::symbolicLink) continue;
        WalkTotals more;
        if (child->entry.target == PathTarget::directory) more = totalsIn(*child);
        if (child->entry.target == PathTarget::file) more = {sizeOf(*child), 1};
        totals.bytes += more.bytes;
        totals.items += more.items;
    }
    return totals;
}

bool concerns(const std::string& item, const std::string& folder) {
    return item == folder || paths::isBelow(item, folder) || paths::isBelow(folder, item);
}

}  // namespace

TotalsModel::TotalsModel(test::FakeFileManager& files) : files_(files) {
    noteChange();
    files.onChange = [this](const std::string& from, const std::string& to) {
        std::vector<std::string> changed;
        for (const std::string& path : {from, to}) {
            if (!path.empty()) changed.push_back(paths::normalized(path));
        }
        note(changed);
        if (changed.size() == 2) takeAlong(changed[0], changed[1]);
    };
}

void TotalsModel::note(const std::vector<std::string>& changed) {
    note(files_.root(), "/", changed);
}

// What is not there any more keeps what is noted of it: a row may still show it when something comes back.
void TotalsModel::note(const Item& folder, const std::string& path, const std::vector<std::string>& changed) {
    std::vector<WalkTotals>& noted = totals_[path];
    if (std::ranges::any_of(changed, [&](const std::string& item) { return concerns(item, path); })) {
        noted.clear();
    }
    const WalkTotals now = totalsIn(folder);
    if (std::ranges::find(noted, now) == noted.end()) noted.push_back(now);
    for (const auto& child : folder.children) {
        if (child->entry.target != PathTarget::directory) continue;
        note(*child, paths::appending(path, child->entry.name), changed);
    }
}

void TotalsModel::takeAlong(const std::string& from, const std::string& to) {
    const auto noted = totals_;
    for (const auto& [path, totals] : noted) {
        if (path != from && !paths::isBelow(path, from)) continue;
        auto& more = totals_[to + path.substr(from.size())];
        more.insert(more.end(), totals.begin(), totals.end());
    }
}

const Item* TotalsModel::folderAt(const std::string& path) const {
    Item* folder = &files_.root();
    std::string_view rest = path;
    while (folder != nullptr && !rest.empty()) {
        const std::string_view name = rest.substr(0, rest.find('/'));
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        if (!name.empty()) folder = test::FakeFileManager::childNamed(*folder, name);
    }
    return folder != nullptr && folder->entry.target == PathTarget::directory ? folder : nullptr;
}

WalkTotals TotalsModel::totalsOf(const std::string& path) const {
    const Item* const folder = folderAt(path);
    return folder == nullptr ? WalkTotals() : totalsIn(*folder);
}

bool TotalsModel::mayShow(const std::string& path, WalkTotals totals) const {
    if (folderAt(path) == nullptr) return true;
    const auto noted = totals_.find(path);
    return noted != totals_.end() && std::ranges::find(noted->second, totals) != noted->second.end();
}

}  // namespace vantrel::fuzz
