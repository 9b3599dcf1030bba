#include "walk/KnownTotals.h"

#include <cmath>
#include <utility>

namespace vantrel {

namespace {

using namespace std::chrono_literals;

// Some 80 bytes each; twice as many are kept at most.
constexpr std::size_t mostYounger = 40'000;
constexpr std::size_t markBits = std::size_t{1} << 18;
constexpr std::size_t bitsPerWord = 64;

// While little is known, every folder is remembered. The more is known, the larger a folder has to be: a walk
// over a thousand entries takes a millisecond or two.
struct Step {
    std::size_t known;
    std::uint64_t entries;
};
constexpr Step steps[] = {{60'000, 100'000}, {40'000, 10'000}, {16'000, 1'000}, {4'096, 100}};

// File systems stamp in steps: of a clock tick, or of whole seconds (ext4 with small inodes). Over five of
// them no change was missed with these margins.
CalendarTime::duration marginOf(CalendarTime stamp) {
    const bool isWholeSecond = stamp.time_since_epoch() % 1s == 0s;
    return isWholeSecond ? CalendarTime::duration(2s) : CalendarTime::duration(20ms);
}

// NTP moves a clock by less while totals are believed.
constexpr Seconds jump{1};

}  // namespace

/// Holds the locks of all parts: what happens meanwhile happens in one moment.
class KnownTotals::AllParts {
public:
    explicit AllParts(KnownTotals& known) : parts_(known.parts_) {
        for (Part& part : parts_) part.lock.lock();
    }
    ~AllParts() {
        for (Part& part : parts_) part.lock.unlock();
    }
    AllParts(const AllParts&) = delete;
    AllParts& operator=(const AllParts&) = delete;

private:
    std::array<Part, partCount>& parts_;
};

KnownTotals::KnownTotals(const Clock& clock, const Calendar& calendar)
    : clock_(clock),
      calendar_(calendar),
      offset_(offset()),
      marks_(std::make_unique<std::atomic<std::uint64_t>[]>(markBits / bitsPerWord)) {
    // So that no walk waits for a table that grows.
    for (Part& part : parts_) part.younger.reserve(mostYounger / partCount);
}

KnownTotals::~KnownTotals() = default;

std::size_t KnownTotals::Hash::operator()(const FileIdentity& folder) const {
    // Inodes come in runs; multiplied by 2^64 over the golden ratio they spread over all bits.
    constexpr std::uint64_t spread = 0x9E3779B97F4A7C15U;
    const std::uint64_t mixed = (folder.inode ^ (folder.device << 40U)) * spread;
    return static_cast<std::size_t>(mixed ^ (mixed >> 32U));
}

std::size_t KnownTotals::bitOf(const FileIdentity& folder) {
    return Hash()(folder) % markBits;
}

KnownTotals::Part& KnownTotals::partOf(const FileIdentity& folder) {
    return parts_[bitOf(folder) / (markBits / partCount)];
}

Seconds KnownTotals::offset() const {
    return calendar_.now().time_since_epoch() - clock_.now();
}

std::uint64_t KnownTotals::smallest() const {
    const std::size_t size = size_.load(std::memory_order_relaxed);
    for (const Step& step : steps) {
        if (size >= step.known) return step.entries;
    }
    return 0;
}

bool KnownTotals::isKnown(const FileIdentity& folder) {
    if (!isMarked(folder)) return false;
    Part& part = partOf(folder);
    const std::lock_guard lock(part.lock);
    return part.younger.contains(folder) || part.older.contains(folder);
}

bool KnownTotals::isMarked(const FileIdentity& folder) const {
    const std::size_t bit = bitOf(folder);
    const std::uint64_t word = marks_[bit / bitsPerWord].load(std::memory_order_relaxed);
    return (word >> (bit % bitsPerWord) & 1U) != 0;
}

void KnownTotals::mark(const FileIdentity& folder) {
    const std::size_t bit = bitOf(folder);
    marks_[bit / bitsPerWord].fetch_or(std::uint64_t{1} << (bit % bitsPerWord), std::memory_order_relaxed);
}

// Under the part's lock.
void KnownTotals::markAll(const Part& part) {
    constexpr std::size_t words = markBits / bitsPerWord / partCount;
    const auto first = static_cast<std::size_t>(&part - parts_.data()) * words;
    for (std::size_t i = first; i < first + words; ++i) marks_[i].store(0, std::memory_order_relaxed);
    for (const auto& [folder, record] : part.younger) mark(folder);
    for (const auto& [folder, record] : part.older) mark(folder);
}

void KnownTotals::remember(const CountedFolder& folder) {
    Records dropped;  // without the lock
    Part& part = partOf(folder.identity);
    const std::lock_guard lock(part.lock);
    if (folder.changes != changes_.load(std::memory_order_relaxed)) return;
    add(folder.identity, {folder.totals, folder.entries, folder.unchangedSince, folder.oldest}, part,
        dropped);
}

// Under the part's lock.
void KnownTotals::add(const FileIdentity& folder, const Record& record, Part& part, Records& dropped) {
    const std::size_t before = part.younger.size() + part.older.size();
    const CalendarTime now = calendar_.now();
    // After that time all that is old is not believed any more.
    if (part.younger.size() >= mostYounger / partCount || now - part.youngerSince >= lifetime) {
        dropped = std::exchange(part.older, std::exchange(part.younger, {}));
        part.youngerSince = now;
        markAll(part);
    }
    if (!part.older.empty()) part.older.erase(folder);
    part.younger.insert_or_assign(folder, record);
    mark(folder);
    // Where it became less the difference wraps, and the sum wraps back.
    size_.fetch_add(part.younger.size() + part.older.size() - before, std::memory_order_relaxed);
}

// Under the part's lock. What is asked for stays among the younger ones.
const KnownTotals::Record* KnownTotals::recordOf(const FileIdentity& folder, Part& part, Records& dropped) {
    if (const auto found = part.older.find(folder); found != part.older.end()) {
        const Record record = found->second;
        add(folder, record, part, dropped);
    }
    const auto found = part.younger.find(folder);
    return found == part.younger.end() ? nullptr : &found->second;
}

std::optional<CountedFolder> KnownTotals::find(const FileIdentity& folder, CalendarTime changed) {
    if (!isMarked(folder)) return std::nullopt;
    lookAtClocks();
    Records dropped;  // without the lock
    Part& part = partOf(folder);
    const std::lock_guard lock(part.lock);
    const Record* const record = recordOf(folder, part, dropped);
    if (!record || changed >= record->unchangedSince - marginOf(changed)) return std::nullopt;
    if (calendar_.now() - record->oldest >= lifetime) return std::nullopt;
    return CountedFolder{folder,          record->totals,
                         record->entries, record->unchangedSince,
                         record->oldest,  changes_.load(std::memory_order_relaxed)};
}

// Counted in the same moment: what a walk has read before is remembered either already, and goes here, or
// never.
void KnownTotals::forget(const std::vector<FileIdentity>& folders) {
    const AllParts all(*this);
    // Release, so that who opens a folder after seeing the new number opens it after the change.
    changes_.fetch_add(1, std::memory_order_release);
    for (const FileIdentity& folder : folders) {
        Part& part = partOf(folder);
        size_.fetch_sub(part.younger.erase(folder) + part.older.erase(folder), std::memory_order_relaxed);
    }
}

void KnownTotals::forgetAll() {
    const AllParts all(*this);
    forgetEach();
}

// Under all locks.
void KnownTotals::forgetEach() {
    changes_.fetch_add(1, std::memory_order_release);  // as above
    for (Part& part : parts_) {
        part.younger.clear();
        part.older.clear();
        markAll(part);
    }
    size_.store(0, std::memory_order_relaxed);
}

// Slow drifts are followed. After a jump all is forgotten before anybody takes the new offset for the old
// one.
void KnownTotals::lookAtClocks() {
    const Seconds now = offset();
    if (std::abs((now - offset_.load(std::memory_order_relaxed)).count()) < jump.count()) {
        offset_.store(now, std::memory_order_relaxed);
        return;
    }
    const AllParts all(*this);
    forgetEach();
    offset_.store(now, std::memory_order_relaxed);
}

}  // namespace vantrel
