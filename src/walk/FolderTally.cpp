#include "walk/FolderTally.h"

namespace vantrel::walking {

namespace {

// Of the sub-folders of one folder. A million empty ones would push out all else.
constexpr std::uint32_t mostSmallChildren = 10'000;
constexpr std::uint64_t smallEntries = 1'000;

}  // namespace

void FolderTally::willOpen(const KnownTotals& known) {
    changes_ = known.changes();
    openedAt_ = known.now();
    oldest_.store(openedAt_, std::memory_order_relaxed);
}

void FolderTally::lower(CalendarTime oldest) {
    CalendarTime before = oldest_.load(std::memory_order_relaxed);
    while (oldest < before && !oldest_.compare_exchange_weak(before, oldest, std::memory_order_relaxed))
        continue;
}

void FolderTally::add(const Finding& finding) {
    if (finding.entries == 0) return;
    bytes_.fetch_add(finding.totals.bytes, std::memory_order_relaxed);
    items_.fetch_add(finding.totals.items, std::memory_order_relaxed);
    entries_.fetch_add(finding.entries, std::memory_order_relaxed);
    lower(finding.oldest);
}

bool FolderTally::isOfUse(const CountedFolder& child) const {
    return child.entries > smallEntries || remembered_ + children_.size() < mostSmallChildren;
}

// A walk that is cancelled may never come to the end of this folder: once it is known to hold enough, its
// sub-folders are remembered at once.
void FolderTally::addChild(const CountedFolder& child, KnownTotals& known) {
    const bool isWorthIt = entries_.load(std::memory_order_relaxed) >= known.smallest();
    const std::lock_guard lock(lock_);
    if (!isOfUse(child)) return;
    if (!isWorthIt) return children_.push_back(child);
    for (const CountedFolder& counted : children_) known.remember(counted);
    known.remember(child);
    remembered_ += static_cast<std::uint32_t>(children_.size() + 1);
    children_.clear();
}

void FolderTally::end(FolderTally* above, KnownTotals& known) {
    const CountedFolder counted{
        .identity = identity_,
        .totals = {bytes_.load(std::memory_order_relaxed), items_.load(std::memory_order_relaxed)},
        .entries = entries_.load(std::memory_order_relaxed),
        .unchangedSince = found_,
        .oldest = oldest_.load(std::memory_order_relaxed),
        .changes = changes_};
    const bool hasNoGap = isWhole_.load(std::memory_order_relaxed);
    const bool isWhole = stage_ == Stage::opened && hasNoGap;
    if (counted.entries >= known.smallest()) {
        for (const CountedFolder& child : children_) known.remember(child);
    }
    if (!above) {
        if (isWhole) known.remember(counted);
        return;
    }
    if (stage_ == Stage::absent && hasNoGap) return;
    above->add({counted.totals, counted.entries + 1, counted.oldest});
    if (isWhole) {
        above->addChild(counted, known);
    } else {
        above->hasGap();
    }
}

}  // namespace vantrel::walking
