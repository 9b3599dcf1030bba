#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <unordered_map>

#include "base/Guarded.h"
#include "model/engine/ContentsChange.h"
#include "model/engine/FolderPlace.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/MainQueue.h"
#include "walk/KnownTotals.h"
#include "walk/Walk.h"

namespace vantrel {

/// A hook for whoever wants to hear of finished totals. Deliberately never called: reports go to `onUpdate`.
class VantrelEngineDelegate {
public:
    virtual ~VantrelEngineDelegate() = default;
    virtual void engineDidCalculate(const std::string& path, WalkTotals totals) = 0;
};

/// What the engine stands on. Borrowed; all of it outlives the engine, which walks may keep.
struct VantrelEngineServices {
    WalkQueue& calculationQueue;
    MainQueue& mainQueue;
    const Clock& clock;
    KnownTotals* known = nullptr;  ///< what the queue's walks remember
};

/// Recursive folder sizes, computed in the background.
/// Threads: any thread may call any operation; `onUpdate` runs later on the main queue, never inside a call.
/// Units: bytes allocated on disk and entries, without folders and symbolic links.
/// Errors: none are reported; what cannot be read is left out, a folder that cannot be opened is 0 and 0.
/// Lifetime: the engine keeps `onUpdate` for as long as it may still be called: it is destroyed after the
/// final report has been made, or as soon as the walk is cancelled and what it reported before has been
/// served. So capture views weakly. A walk holds the engine weakly while it waits and strongly while it runs,
/// so that it still reports when the owner has let go; the engine then ends on one of the threads that walk.
class VantrelEngine : public std::enable_shared_from_this<VantrelEngine> {
public:
    using OnUpdate = std::function<void(std::int64_t bytes, std::int64_t itemsCount, bool isComplete)>;

    /// Finished totals are believed for so long, from the beginning of the walk that found them, or of the
    /// earlier one that it took something over from: all that was read is younger.
    static constexpr Seconds cacheLifetime = KnownTotals::lifetime;

    static std::shared_ptr<VantrelEngine> make(const VantrelEngineServices& services);
    ~VantrelEngine();
    VantrelEngine(const VantrelEngine&) = delete;
    VantrelEngine& operator=(const VantrelEngine&) = delete;

    /// The process's one engine, made at the first call (by any thread) and never destroyed. `provideShared`
    /// must have said before what it stands on.
    static VantrelEngine& shared();
    static void provideShared(std::function<VantrelEngineServices()> services);

    /// Starts the walk of the folder at `path`, or answers from the cache or what walks remember. Any number
    /// of progress reports arrive, at most ten a second, then one final report. A walk of the same path that
    /// is under way is cancelled; a cancelled walk reports nothing any more. `place` tells what the path
    /// leads to.
    void calculateVantrel(const std::string& path, OnUpdate onUpdate, const FolderPlace& place = {});

    /// The totals of `path` when they are less than 300 seconds old, no change has outdated them, and the
    /// path still leads to the folder that was counted (where both are known).
    std::optional<WalkTotals> cachedSize(const std::string& path, const FolderPlace& place = {}) const;

    /// To be called when files have been changed, after the change and also when it failed half-way. Totals
    /// that it outdates are no longer believed, and walks that it outdates are cancelled, in one moment: what
    /// they read may be from before the change. Whoever still wants these totals has to ask again. What was
    /// renamed takes its totals along.
    void contentsDidChange(const ContentsChange& change);

    /// Whether a walk of exactly `path` is waiting or running, so that a final report is still to come.
    bool isCalculating(const std::string& path) const;

    /// To be called now and then while totals are awaited, see WalkQueue. Main thread only.
    bool catchUp(Seconds lent = Seconds(0)) { return calculationQueue_.catchUp(lent); }

    void cancelFor(const std::string& path);

    /// Cancels every walk whose path begins with `prefix`: a plain test of strings on purpose, so "/a"
    /// reaches
    /// "/ab" as well. An empty prefix cancels nothing.
    void cancelForPrefix(std::string_view prefix);

    /// Cancels every walk; finished totals stay in the cache.
    void cancelAll();

    /// Free and total bytes of the volume that holds `path`, or nothing.
    static std::optional<VolumeCapacity> getVolumeCapacity(FileManager& files, const std::string& path);

    /// Set before the first request, if at all.
    std::weak_ptr<VantrelEngineDelegate> delegate;

private:
    enum class Belief : std::uint8_t { believed, outdated };

    struct CacheRecord {
        WalkTotals totals;
        Seconds timestamp;  // when the walk began
        FolderPlace place;
        Belief belief = Belief::believed;
    };
    using Cache = std::unordered_map<std::string, CacheRecord>;

    using SharedOnUpdate = std::shared_ptr<const OnUpdate>;

    enum class WalkStage : std::uint8_t { inFlight, ended };

    struct WorkItem {
        std::stop_source cancellation;
        FolderPlace place;  // never changes
        // Both guarded like the table that holds the item.
        WalkStage stage = WalkStage::inFlight;
        SharedOnUpdate onUpdate;  // none once the walk is cancelled
    };

    struct Tables {
        Cache cache;
        std::unordered_map<std::string, std::shared_ptr<WorkItem>> activeWorkItems;
    };

    class Reporter;

    explicit VantrelEngine(const VantrelEngineServices& services);
    std::shared_ptr<WorkItem> registerWorkItem(const std::string& path, OnUpdate onUpdate,
                                               const FolderPlace& place);
    SharedOnUpdate onUpdateOf(const WorkItem& item) const;
    SharedOnUpdate storeResult(const std::string& path, WorkItem& item, WalkTotals totals, Seconds begun);
    SharedOnUpdate markEnded(WorkItem& item);
    static SharedOnUpdate cancel(WorkItem& item);
    std::optional<WalkTotals> rememberedSize(const FolderPlace& place) const;
    void forget(const ContentsChange& change);
    static void outdate(Cache& cache, const ContentsChange& change);

    WalkQueue& calculationQueue_;
    MainQueue& mainQueue_;
    const Clock& clock_;
    KnownTotals* const known_;
    Guarded<Tables> tables_;  // its lock is never held during a walk, a post or a callback
};

}  // namespace vantrel
