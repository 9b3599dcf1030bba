#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/Clock.h"
#include "platform/DirectoryReader.h"
#include "walk/Walk.h"

namespace vantrel {

class KnownTotals;

namespace walking {
class WalkScheduler;
}  // namespace walking

/// What counts is every entry below a root that is neither folder nor symbolic link, hard links each time,
/// hidden names too. A file mounted upon a file counts as what it shows; a folder on which something is
/// mounted adds nothing. What cannot be read is left out.
///
/// A folder inside a walk is the unit of work: each thread has a stack of them, idle threads take the oldest
/// of another's. Further walks begin, in the order of submission, after every few folders, so that small ones
/// are known early. Memory grows with neither files nor sub-folders, descriptors stay within a budget, and a
/// shortage of descriptors delays a walk but loses nothing.
///
/// Any thread may submit and ask for readers.
class WalkPool final : public WalkQueue {
public:
    enum class Reach : std::uint8_t {
        wholeTree,
        ownFilesOnly,  ///< what stands in the root itself
    };

    using ReaderFactory = std::function<std::unique_ptr<walking::DirectoryReader>()>;

    struct Options {
        ReaderFactory makeReader;      ///< called once for each thread, and once more
        int descriptorBudget;          ///< beside some three per thread
        KnownTotals* known = nullptr;  ///< what walks take over and leave behind; borrowed
        unsigned threads = recommendedThreads();
    };

    /// More threads than processors, because threads wait for disks.
    static unsigned recommendedThreads();

    /// Threads start when there is work for them. Those that the system refuses are asked for again later,
    /// and the others do their work meanwhile; only when there is none do walks wait for `catchUp`. `clock`
    /// must outlive the pool. A relative root starts at the program's working folder, which should not change
    /// while the pool lives.
    WalkPool(const Clock& clock, const Options& options);

    /// Cancels all walks, without calling their observers, and waits for the threads, be it for a system call
    /// on a dead server. A program therefore keeps its pool until it exits and never destroys it (`*new
    /// WalkPool`): leaving the program then waits for nothing.
    ~WalkPool() override;

    void submit(std::string root, std::stop_token stop, std::unique_ptr<WalkObserver> observer) override;
    void submit(std::string root, std::stop_token stop, std::unique_ptr<WalkObserver> observer, Reach reach);

    bool catchUp(Seconds lent) override;

    /// A reader of the kind that the threads use.
    std::unique_ptr<walking::DirectoryReader> makeReader() const { return makeReader_(); }

private:
    ReaderFactory makeReader_;
    KnownTotals* const known_;
    std::unique_ptr<walking::WalkScheduler> scheduler_;
};

}  // namespace vantrel
