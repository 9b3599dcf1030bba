#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "base/FileIdentity.h"
#include "base/FileTime.h"
#include "platform/Clock.h"
#include "walk/Walk.h"

namespace vantrel {

/// A folder that a walk has counted to its end, with all below it.
struct CountedFolder {
    FileIdentity identity = {};
    WalkTotals totals = {};
    std::uint64_t entries = 0;         ///< below it, folders too
    CalendarTime unchangedSince = {};  ///< before it was found; what changes in it later may be missing
    CalendarTime oldest = {};          ///< nothing in the totals was read before
    std::uint64_t changes = 0;         ///< of our own, before it was opened: see `KnownTotals::changes`
};

/// What walks remember of the folders that they have counted on their way, so that nobody has to count these
/// again: a bounded number of them, known by device and inode, whatever path leads there.
///
/// A total is believed for 300 seconds, as long as the folder itself has not changed since it was counted.
/// What other programs change deeper below is seen when these are over; our own changes are told.
///
/// Any thread may call. Nothing is read from any file system here, no call waits, none fails.
class KnownTotals {
public:
    static constexpr Seconds lifetime{300};

    /// Totals get older with `clock`, which only goes forward. When `calendar` jumps, its earlier stamps mean
    /// nothing any more and all is forgotten. Both are borrowed.
    KnownTotals(const Clock& clock, const Calendar& calendar);
    ~KnownTotals();
    KnownTotals(const KnownTotals&) = delete;
    KnownTotals& operator=(const KnownTotals&) = delete;

    CalendarTime now() const { return calendar_.now(); }

    /// How often something was forgotten because it had changed. To be asked before a folder is opened: what
    /// was read before a change is not remembered after it.
    std::uint64_t changes() const { return changes_.load(std::memory_order_acquire); }

    /// What smaller folders hold need not be remembered: it is counted again in no time. In entries, all that
    /// a folder holds.
    std::uint64_t smallest() const;

    void remember(const CountedFolder& folder);

    /// Whether a look at the folder may be worth it, for `find`. Takes no lock for most that are not known.
    bool isKnown(const FileIdentity& folder);

    /// The total of a folder that last changed at that moment, if it is known and to be believed.
    std::optional<CountedFolder> find(const FileIdentity& folder, CalendarTime changed);

    /// The contents of these folders have been changed by this program, anywhere below.
    void forget(const std::vector<FileIdentity>& folders);

    void forgetAll();

private:
    struct Hash {
        std::size_t operator()(const FileIdentity& folder) const;
    };
    struct Record {
        WalkTotals totals;
        std::uint64_t entries;
        CalendarTime unchangedSince;
        CalendarTime oldest;
    };
    using Records = std::unordered_map<FileIdentity, Record, Hash>;

    /// One of several parts, so that threads seldom wait for each other.
    struct alignas(64) Part {
        std::mutex lock;
        // Under lock. When the younger ones are too many, or the first of them too old, they become the older
        // ones, and those are dropped.
        Records younger;
        Records older;
        CalendarTime youngerSince;
    };
    class AllParts;

    static constexpr std::size_t partCount = 16;

    static std::size_t bitOf(const FileIdentity& folder);
    Part& partOf(const FileIdentity& folder);
    bool isMarked(const FileIdentity& folder) const;
    void lookAtClocks();
    Seconds offset() const;
    const Record* recordOf(const FileIdentity& folder, Part& part, Records& dropped);
    void add(const FileIdentity& folder, const Record& record, Part& part, Records& dropped);
    void mark(const FileIdentity& folder);
    void markAll(const Part& part);
    void forgetEach();

    const Clock& clock_;
    const Calendar& calendar_;
    std::atomic<Seconds> offset_;            // of the calendar to the clock; relaxed: each looks for itself
    std::atomic<std::uint64_t> changes_{0};  // changed under all locks
    std::atomic<std::size_t> size_{0};       // relaxed: a number to go by
    std::array<Part, partCount> parts_;
    // One bit for each of some hashes, so that walks need no lock for what is not known; those of a part side
    // by side. Relaxed: a bit that is seen late costs a folder's reading.
    const std::unique_ptr<std::atomic<std::uint64_t>[]> marks_;
};

}  // namespace vantrel
