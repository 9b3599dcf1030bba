#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "base/FileIdentity.h"
#include "base/FileTime.h"
#include "walk/KnownTotals.h"
#include "walk/Walk.h"

namespace vantrel::walking {

/// What a thread has found in one folder: its own entries, and sub-folders whose totals were known.
struct Finding {
    WalkTotals totals;
    std::uint64_t entries = 0;
    CalendarTime oldest = CalendarTime::max();  ///< of the totals taken over
};

/// Adds up what one folder holds, so that it can be remembered when all below it has been counted. Only for
/// walks that remember.
///
/// Threads: any may add and tell of gaps while the folder has not ended; all else is for the one thread that
/// opens it, and later the one that ends it.
class FolderTally {
public:
    /// `found` is a time before the folder's name was read, such as that at which the one above was opened.
    FolderTally(const FileIdentity& identity, CalendarTime found) : identity_(identity), found_(found) {}

    /// Where the entry in the folder above does not tell it, before anything is added.
    void setIdentity(const FileIdentity& identity) { identity_ = identity; }
    const FileIdentity& identity() const { return identity_; }

    /// To be called before the folder is opened.
    void willOpen(const KnownTotals& known);

    CalendarTime openedAt() const { return openedAt_; }
    void didOpen() { stage_ = Stage::opened; }

    /// It is not there, or something is mounted on it: the folder above has no such sub-folder.
    void isAbsent() { stage_ = Stage::absent; }

    /// Something in the folder could not be read, or will not be.
    void hasGap() { isWhole_.store(false, std::memory_order_relaxed); }

    void add(const Finding& finding);

    /// All below the folder has ended. Adds it to the one above, if any, and remembers what is worth it.
    void end(FolderTally* above, KnownTotals& known);

private:
    enum class Stage : std::uint8_t { found, opened, absent };

    void addChild(const CountedFolder& child, KnownTotals& known);
    void lower(CalendarTime oldest);
    bool isOfUse(const CountedFolder& child) const;

    FileIdentity identity_;
    const CalendarTime found_;
    std::uint64_t changes_ = 0;
    CalendarTime openedAt_;
    Stage stage_ = Stage::found;

    // Relaxed: the last reference to the folder, given back and taken with acquire and release, makes them
    // known to who ends it. Before that they are numbers to go by.
    std::atomic<bool> isWhole_{true};
    std::atomic<CalendarTime> oldest_{CalendarTime::max()};
    std::atomic<std::int64_t> bytes_{0};
    std::atomic<std::int64_t> items_{0};
    std::atomic<std::uint64_t> entries_{0};

    std::mutex lock_;
    // Under lock_: whether they are remembered is decided when it is known how much this folder holds.
    std::vector<CountedFolder> children_;
    std::uint32_t remembered_ = 0;
};

}  // namespace vantrel::walking
