#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/Clock.h"
#include "walk/DirectoryReader.h"
#include "walk/Walk.h"

namespace vantrel {

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
class WalkPool final : public WalkQueue {
public:
    enum class Reach : std::uint8_t {
        wholeTree,
        ownFilesOnly,  ///< what stands in the root itself
    };

    using ReaderFactory = std::function<std::unique_ptr<walking::DirectoryReader>()>;

    struct Options {
        unsigned threads = recommendedThreads();
        int descriptorBudget = recommendedDescriptorBudget();  ///< beside some three per thread
        ReaderFactory makeReader = nativeReader;               ///< called once for each thread, and once more
    };

    /// More threads than processors, because threads wait for disks.
    static unsigned recommendedThreads();

    /// Half of what the system allows the process, and not more than some thousand.
    static int recommendedDescriptorBudget();

    /// The reader made for this system, and the one that needs POSIX only: the same results, as far as the
    /// system tells the latter where something is mounted.
    static std::unique_ptr<walking::DirectoryReader> nativeReader();
    static std::unique_ptr<walking::DirectoryReader> portableReader();

    /// Threads start when there is work for them. Those that the system refuses are asked for again later,
    /// and the others do their work meanwhile; only when there is none do walks wait for `catchUp`. `clock`
    /// must outlive the pool. A relative root starts at the program's working folder, which should not change
    /// while the pool lives.
    explicit WalkPool(const Clock& clock);
    WalkPool(const Clock& clock, const Options& options);

    /// Cancels all walks, without calling their observers, and waits for the threads, be it for a system call
    /// on a dead server. A program therefore keeps its pool until it exits and never destroys it (`*new
    /// WalkPool`): leaving the program then waits for nothing.
    ~WalkPool() override;

    void submit(std::string root, std::shared_ptr<const CancellationFlag> cancellation,
                std::unique_ptr<WalkObserver> observer) override;
    void submit(std::string root, std::shared_ptr<const CancellationFlag> cancellation,
                std::unique_ptr<WalkObserver> observer, Reach reach);

    bool catchUp(Seconds lent) override;

private:
    std::unique_ptr<walking::WalkScheduler> scheduler_;
};

}  // namespace vantrel
