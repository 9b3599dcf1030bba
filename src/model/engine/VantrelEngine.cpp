#include "model/engine/VantrelEngine.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/Precondition.h"

namespace vantrel {

// Carries the reports of one walk to the main queue. Lives on the threads that walk. Holds the engine while
// the walk runs, so that the engine's end may happen here.
class VantrelEngine::Reporter final : public WalkObserver {
public:
    Reporter(std::weak_ptr<VantrelEngine> engine, std::string path, std::shared_ptr<WorkItem> item)
        : engine_(std::move(engine)), path_(std::move(path)), item_(std::move(item)) {}

    void walkDidBegin() override {
        held_ = engine_.lock();
        if (held_) begun_ = held_->clock_.now();
    }

    void walkDidProgress(WalkTotals soFar) override {
        if (held_) post(*held_, held_->onUpdateOf(*item_), soFar, false);
    }

    void walkDidTakeOver(Seconds age) override {
        if (held_) begun_ = std::min(begun_, held_->clock_.now() - age);
    }

    void walkDidEnd(WalkOutcome outcome, WalkTotals totals) override {
        const auto engine = std::exchange(held_, nullptr);
        if (!engine || outcome == WalkOutcome::cancelled) return;
        if (outcome == WalkOutcome::finished) {
            post(*engine, engine->storeResult(path_, *item_, totals, begun_), totals, true);
        } else {
            post(*engine, engine->markEnded(*item_), {}, true);
        }
    }

private:
    // Without `onUpdate` the walk has been cancelled.
    static void post(VantrelEngine& engine, SharedOnUpdate onUpdate, WalkTotals totals, bool isComplete) {
        if (!onUpdate) return;
        engine.mainQueue_.post([onUpdate = std::move(onUpdate), totals, isComplete] {
            (*onUpdate)(totals.bytes, totals.items, isComplete);
        });
    }

    std::weak_ptr<VantrelEngine> engine_;
    std::shared_ptr<VantrelEngine> held_;  // from the walk's beginning to its end
    Seconds begun_{};
    std::string path_;
    std::shared_ptr<WorkItem> item_;
};

namespace {

std::function<VantrelEngineServices()>& sharedServices() {
    static std::function<VantrelEngineServices()> services;
    return services;
}

}  // namespace

VantrelEngine::VantrelEngine(const VantrelEngineServices& services)
    : calculationQueue_(services.calculationQueue),
      mainQueue_(services.mainQueue),
      clock_(services.clock),
      known_(services.known) {}

VantrelEngine::~VantrelEngine() {
    cancelAll();
}

std::shared_ptr<VantrelEngine> VantrelEngine::make(const VantrelEngineServices& services) {
    return std::shared_ptr<VantrelEngine>(new VantrelEngine(services));
}

void VantrelEngine::provideShared(std::function<VantrelEngineServices()> services) {
    sharedServices() = std::move(services);
}

VantrelEngine& VantrelEngine::shared() {
    // Never destroyed: a walk that is stuck in a system call may outlive everything that could wait for it.
    static const auto* const instance = [] {
        precondition(static_cast<bool>(sharedServices()),
                     "the shared engine was asked for before its services");
        return new std::shared_ptr<VantrelEngine>(make(sharedServices()()));
    }();
    return **instance;
}

void VantrelEngine::calculateVantrel(const std::string& path, OnUpdate onUpdate, const FolderPlace& place) {
    std::optional<WalkTotals> known = cachedSize(path, place);
    if (!known) known = rememberedSize(place);
    if (known) {
        mainQueue_.post([onUpdate = std::move(onUpdate), totals = *known] {
            onUpdate(totals.bytes, totals.items, true);
        });
        return;
    }
    const std::shared_ptr<WorkItem> item = registerWorkItem(path, std::move(onUpdate), place);
    calculationQueue_.submit(path, item->cancellation.get_token(),
                             std::make_unique<Reporter>(weak_from_this(), path, item));
}

std::shared_ptr<VantrelEngine::WorkItem> VantrelEngine::registerWorkItem(const std::string& path,
                                                                         OnUpdate onUpdate,
                                                                         const FolderPlace& place) {
    auto item = std::make_shared<WorkItem>();
    item->place = place;
    item->onUpdate = std::make_shared<const OnUpdate>(std::move(onUpdate));
    const SharedOnUpdate silenced = tables_.with([&](Tables& tables) {
        std::shared_ptr<WorkItem>& place = tables.activeWorkItems[path];
        SharedOnUpdate replaced = place ? cancel(*place) : nullptr;
        place = item;
        return replaced;
    });
    return item;
}

// Answers what the walk will not call any more. The caller lets go of it without the lock, since whatever a
// callback holds may call the engine when it is destroyed.
VantrelEngine::SharedOnUpdate VantrelEngine::cancel(WorkItem& item) {
    item.cancellation.request_stop();
    return std::exchange(item.onUpdate, nullptr);
}

VantrelEngine::SharedOnUpdate VantrelEngine::onUpdateOf(const WorkItem& item) const {
    return tables_.with([&](const Tables&) { return item.onUpdate; });
}

// Answers whom to report to, nobody when the walk is not wanted any more. That is looked at under the lock
// that every canceller holds, so a cancelled walk stores nothing in any race.
VantrelEngine::SharedOnUpdate VantrelEngine::storeResult(const std::string& path, WorkItem& item,
                                                         WalkTotals totals, Seconds begun) {
    return tables_.with([&](Tables& tables) -> SharedOnUpdate {
        if (item.cancellation.stop_requested()) return nullptr;
        tables.cache[path] = {totals, begun, item.place};
        tables.activeWorkItems.erase(path);
        return std::exchange(item.onUpdate, nullptr);
    });
}

VantrelEngine::SharedOnUpdate VantrelEngine::markEnded(WorkItem& item) {
    return tables_.with([&](Tables&) {
        item.stage = WalkStage::ended;
        return std::exchange(item.onUpdate, nullptr);
    });
}

std::optional<WalkTotals> VantrelEngine::cachedSize(const std::string& path, const FolderPlace& place) const {
    const Seconds now = clock_.now();
    return tables_.with([&](const Tables& tables) -> std::optional<WalkTotals> {
        const auto found = tables.cache.find(path);
        if (found == tables.cache.end()) return std::nullopt;
        const CacheRecord& record = found->second;
        if (record.belief == Belief::outdated || now - record.timestamp >= cacheLifetime) return std::nullopt;
        const bool isAnother =
            place.identity && record.place.identity && *place.identity != *record.place.identity;
        return isAnother ? std::nullopt : std::optional(record.totals);
    });
}

std::optional<WalkTotals> VantrelEngine::rememberedSize(const FolderPlace& place) const {
    if (!known_ || !place.identity || !place.changed) return std::nullopt;
    const auto counted = known_->find(*place.identity, *place.changed);
    return counted ? std::optional(counted->totals) : std::nullopt;
}

// Nobody knows what is gone of an item, and no record tells what lies below it.
void VantrelEngine::forget(const ContentsChange& change) {
    if (change.isInPart())
        known_->forgetAll();
    else
        known_->forget(change.folders());
}

// A walk is cancelled in the moment in which totals are outdated: it has either stored what it found before
// that, or will not store it at all.
void VantrelEngine::contentsDidChange(const ContentsChange& change) {
    // First, so that a walk which begins after this finds nothing outdated.
    if (known_) forget(change);
    std::vector<SharedOnUpdate> silenced;
    tables_.with([&](Tables& tables) {
        outdate(tables.cache, change);
        std::erase_if(tables.activeWorkItems, [&](const auto& entry) {
            if (!change.outdates(entry.first, entry.second->place)) return false;
            silenced.push_back(cancel(*entry.second));
            return true;
        });
    });
}

void VantrelEngine::outdate(Cache& cache, const ContentsChange& change) {
    std::vector<std::pair<std::string, CacheRecord>> renamed;
    for (auto& [path, record] : cache) {
        if (record.belief == Belief::outdated || !change.outdates(path, record.place)) continue;
        // Of the folders around it only the old ones are known.
        if (std::optional<std::string> newPath = change.newPathOf(path)) {
            renamed.emplace_back(
                std::move(*newPath),
                CacheRecord{record.totals, record.timestamp, {.identity = record.place.identity}});
        }
        record.belief = Belief::outdated;
    }
    for (auto& [path, record] : renamed) cache[std::move(path)] = std::move(record);
}

bool VantrelEngine::isCalculating(const std::string& path) const {
    return tables_.with([&](const Tables& tables) {
        const auto found = tables.activeWorkItems.find(path);
        return found != tables.activeWorkItems.end() && found->second->stage == WalkStage::inFlight;
    });
}

void VantrelEngine::cancelFor(const std::string& path) {
    const SharedOnUpdate silenced = tables_.with([&](Tables& tables) -> SharedOnUpdate {
        const auto found = tables.activeWorkItems.find(path);
        if (found == tables.activeWorkItems.end()) return nullptr;
        SharedOnUpdate cancelled = cancel(*found->second);
        tables.activeWorkItems.erase(found);
        return cancelled;
    });
}

void VantrelEngine::cancelForPrefix(std::string_view prefix) {
    if (prefix.empty()) return;
    std::vector<SharedOnUpdate> silenced;
    tables_.with([&](Tables& tables) {
        std::erase_if(tables.activeWorkItems, [&](const auto& entry) {
            if (!entry.first.starts_with(prefix)) return false;
            silenced.push_back(cancel(*entry.second));
            return true;
        });
    });
}

void VantrelEngine::cancelAll() {
    std::vector<SharedOnUpdate> silenced;
    tables_.with([&](Tables& tables) {
        for (const auto& [path, item] : tables.activeWorkItems) silenced.push_back(cancel(*item));
        tables.activeWorkItems.clear();
    });
}

std::optional<VolumeCapacity> VantrelEngine::getVolumeCapacity(FileManager& files, const std::string& path) {
    return files.volumeCapacity(path);
}

}  // namespace vantrel
