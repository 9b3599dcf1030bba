#include "walk/KnownTotals.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantrel {

namespace {

using namespace std::chrono_literals;

// Some 80 bytes each; twice as many are kept at most, and this many bits are marks.
constexpr std::size_t mostYounger = 60'000;
constexpr std::size_t markBits = std::size_t{1} << 20;
constexpr std::size_t bitsPerWord = 64;

// While little is known, every folder is remembered. Later the smaller ones are not: a walk over so many
// entries takes a millisecond or two.
constexpr std::size_t few = 4'096;
constexpr std::uint64_t manyEntries = 1'000;

// File systems stamp in steps: of a clock tick, or of whole seconds (ext4 with small inodes). Over five of
// them no change was missed with this margin.
constexpr auto stampMargin = 2s;

// NTP moves a clock by less while totals are believed.
constexpr Seconds jump{1};

}  // namespace

KnownTotals::KnownTotals(const Clock& clock, const Calendar& calendar)
    : clock_(clock),
      calendar_(calendar),
      marks_(std::make_unique<std::atomic<std::uint64_t>[]>(markBits / bitsPerWord)),
      offset_(offset()) {}

KnownTotals::~KnownTotals() = default;

std::size_t KnownTotals::Hash::operator()(const FileIdentity& folder) const {
    // Inodes come in runs; multiplied by 2^64 over the golden ratio they spread over all bits.
    constexpr std::uint64_t spread = 0x9E3779B97F4A7C15U;
    const std::uint64_t mixed = (folder.inode ^ (folder.device << 40U)) * spread;
    return static_cast<std::size_t>(mixed ^ (mixed >> 32U));
}

Seconds KnownTotals::offset() const {
    return calendar_.now().time_since_epoch() - clock_.now();
}

std::uint64_t KnownTotals::smallest() const {
    return size_.load(std::memory_order_relaxed) < few ? 0 : manyEntries;
}

bool KnownTotals::mayKnow(const FileIdentity& folder) const {
    const std::size_t bit = Hash()(folder) % markBits;
    const std::uint64_t word = marks_[bit / bitsPerWord].load(std::memory_order_relaxed);
    return (word >> (bit % bitsPerWord) & 1U) != 0;
}

void KnownTotals::mark(const FileIdentity& folder) {
    const std::size_t bit = Hash()(folder) % markBits;
    marks_[bit / bitsPerWord].fetch_or(std::uint64_t{1} << (bit % bitsPerWord), std::memory_order_relaxed);
}

// Under lock_.
void KnownTotals::markAll() {
    for (std::size_t i = 0; i < markBits / bitsPerWord; ++i) marks_[i].store(0, std::memory_order_relaxed);
    for (const auto& [folder, record] : younger_) mark(folder);
    for (const auto& [folder, record] : older_) mark(folder);
}

void KnownTotals::remember(const CountedFolder& folder) {
    Records dropped;  // without the lock
    const std::lock_guard lock(lock_);
    if (folder.changes != changes_.load(std::memory_order_relaxed)) return;
    add(folder.identity, {folder.totals, folder.entries, folder.unchangedSince, folder.oldest}, dropped);
}

// Under lock_.
void KnownTotals::add(const FileIdentity& folder, const Record& record, Records& dropped) {
    if (younger_.size() >= mostYounger) {
        dropped = std::exchange(older_, std::exchange(younger_, {}));
        markAll();
    }
    older_.erase(folder);
    younger_.insert_or_assign(folder, record);
    mark(folder);
    size_.store(younger_.size() + older_.size(), std::memory_order_relaxed);
}

// Under lock_. What is asked for stays among the younger ones.
const KnownTotals::Record* KnownTotals::recordOf(const FileIdentity& folder, Records& dropped) {
    if (const auto found = older_.find(folder); found != older_.end()) {
        const Record record = found->second;
        add(folder, record, dropped);
    }
    const auto found = younger_.find(folder);
    return found == younger_.end() ? nullptr : &found->second;
}

std::optional<CountedFolder> KnownTotals::find(const FileIdentity& folder, CalendarTime changed) {
    if (!mayKnow(folder)) return std::nullopt;
    Records dropped;  // without the lock
    const std::lock_guard lock(lock_);
    lookAtClocks();
    const Record* const record = recordOf(folder, dropped);
    if (!record || changed >= record->unchangedSince - stampMargin) return std::nullopt;
    if (calendar_.now() - record->oldest >= lifetime) return std::nullopt;
    return CountedFolder{folder,          record->totals,
                         record->entries, record->unchangedSince,
                         record->oldest,  changes_.load(std::memory_order_relaxed)};
}

// Under lock_. Counted in the same moment: what a walk has read before is remembered either already, and goes
// here, or never.
void KnownTotals::forget(const std::vector<FileIdentity>& folders) {
    const std::lock_guard lock(lock_);
    // Release, so that who opens a folder after seeing the new number opens it after the change.
    changes_.fetch_add(1, std::memory_order_release);
    for (const FileIdentity& folder : folders) {
        younger_.erase(folder);
        older_.erase(folder);
    }
    size_.store(younger_.size() + older_.size(), std::memory_order_relaxed);
}

void KnownTotals::forgetAll() {
    Records dropped[2];  // without the lock
    const std::lock_guard lock(lock_);
    changes_.fetch_add(1, std::memory_order_release);
    dropped[0].swap(younger_);
    dropped[1].swap(older_);
    markAll();
    size_.store(0, std::memory_order_relaxed);
}

// Under lock_. Slow drifts are followed.
void KnownTotals::lookAtClocks() {
    const Seconds now = offset();
    const bool hasJumped = std::abs((now - offset_).count()) >= jump.count();
    offset_ = now;
    if (!hasJumped) return;
    changes_.fetch_add(1, std::memory_order_release);
    younger_.clear();
    older_.clear();
    markAll();
    size_.store(0, std::memory_order_relaxed);
}

}  // namespace vantrel
