#include "panel/SizeRequests.h"

#include <algorithm>
#include <unordered_set>

#include "model/engine/VantrelEngine.h"

namespace vantrel {

void SizeRequests::askFor(const ItemList& items) {
    awaited_.clear();
    for (const auto& item : items) {
        if (item->isDirectory && !item->isParentDir) awaited_.push_back({item, {}});
    }
    for (Awaited& awaited : awaited_) {
        awaited.item->vantrelState = state::Calculating{};
        ask(awaited);
    }
}

// The callback owns the request, so the request is gone with the last report that can come of it.
void SizeRequests::ask(Awaited& awaited) {
    const auto request = std::make_shared<std::weak_ptr<FileItem>>(awaited.item);
    awaited.request = request;
    engine_.calculateVantrel(
        awaited.item->path,
        [delegate = delegate, request](std::int64_t bytes, std::int64_t itemsCount, bool isComplete) {
            const auto owner = delegate.lock();
            const auto row = request->lock();
            if (!owner || !row) return;
            row->vantrelState = isComplete ? VantrelState(state::Calculated{bytes, itemsCount})
                                           : VantrelState(state::Calculating{bytes, itemsCount});
            owner->sizeDidChange(*row);
        },
        awaited.item->place());
}

bool SizeRequests::askAfterChange(const ItemList& items, const ContentsChange& change) {
    std::vector<Awaited> outdated;
    for (const auto& item : items) {
        if (item->isDirectory && !item->isParentDir && change.outdates(item->path, item->place()) &&
            !change.takesAway(item->path, item->place())) {
            outdated.push_back({item, {}});
        }
    }
    forgetRequestsOf(outdated);
    for (Awaited& awaited : outdated) {
        VantrelState& state = awaited.item->vantrelState;
        if (const auto* total = std::get_if<state::Calculated>(&state)) {
            state = state::Calculating{total->totalBytes, total->itemsCount};
        }
        ask(awaited);
    }
    awaited_.insert(awaited_.end(), outdated.begin(), outdated.end());
    return !outdated.empty();
}

// A report from before the change may wait in the main queue: it will find no row.
void SizeRequests::forgetRequestsOf(const std::vector<Awaited>& outdated) {
    std::unordered_set<const FileItem*> rows;
    for (const Awaited& awaited : outdated) rows.insert(awaited.item.get());
    std::erase_if(awaited_, [&](const Awaited& awaited) {
        if (!rows.contains(awaited.item.get())) return false;
        if (const auto request = awaited.request.lock()) request->reset();
        return true;
    });
}

bool SizeRequests::areAwaited() const {
    return std::ranges::any_of(
        awaited_, [](const Awaited& awaited) { return isCalculating(awaited.item->vantrelState); });
}

// A report that only waits its turn in the main queue is none that is missing.
void SizeRequests::askAgain() {
    std::erase_if(awaited_,
                  [](const Awaited& awaited) { return !isCalculating(awaited.item->vantrelState); });
    for (Awaited& awaited : awaited_) {
        // While the other panel has a walk of this folder under way, asking would only replace that one.
        if (awaited.request.expired() && !engine_.isCalculating(awaited.item->path)) ask(awaited);
    }
}

}  // namespace vantrel
