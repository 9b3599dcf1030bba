#include "model/VantrelEngine.h"

#include <utility>

#include "platform/Precondition.h"

namespace vantrel {

// Carries the reports of one walk to the main queue. Lives on the threads that walk.
class VantrelEngine::Reporter final : public WalkObserver {
public:
    Reporter(std::weak_ptr<VantrelEngine> engine, std::string path, OnUpdate onUpdate,
             std::shared_ptr<WorkItem> item)
        : engine_(std::move(engine)),
          path_(std::move(path)),
          onUpdate_(std::make_shared<const OnUpdate>(std::move(onUpdate))),
          item_(std::move(item)) {}

    void walkDidProgress(WalkTotals soFar) override {
        if (item_->cancellation.isCancelled()) return;
        if (const auto engine = engine_.lock()) post(*engine, soFar, false);
    }

    void walkDidEnd(WalkOutcome outcome, WalkTotals totals) override {
        const auto engine = engine_.lock();
        if (!engine || outcome == WalkOutcome::cancelled) return;
        if (outcome == WalkOutcome::finished) {
            if (engine->storeResult(path_, *item_, totals)) post(*engine, totals, true);
        } else if (engine->markEnded(*item_)) {
            post(*engine, {}, true);
        }
    }

private:
    void post(VantrelEngine& engine, WalkTotals totals, bool isComplete) const {
        engine.mainQueue_.post([onUpdate = onUpdate_, totals, isComplete] {
            (*onUpdate)(totals.bytes, totals.items, isComplete);
        });
    }

    std::weak_ptr<VantrelEngine> engine_;
    std::string path_;
    std::shared_ptr<const OnUpdate> onUpdate_;
    std::shared_ptr<WorkItem> item_;
};

namespace {

std::function<VantrelEngineServices()>& sharedServices() {
    static std::function<VantrelEngineServices()> services;
    return services;
}

}  // namespace

VantrelEngine::VantrelEngine(const VantrelEngineServices& services)
    : calculationQueue_(services.calculationQueue), mainQueue_(services.mainQueue), clock_(services.clock) {}

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

void VantrelEngine::calculateVantrel(const std::string& path, OnUpdate onUpdate) {
    if (const std::optional<WalkTotals> known = cachedSize(path)) {
        mainQueue_.post([onUpdate = std::move(onUpdate), totals = *known] {
            onUpdate(totals.bytes, totals.items, true);
        });
        return;
    }
    const std::shared_ptr<WorkItem> item = registerWorkItem(path);
    calculationQueue_.submit(path, std::shared_ptr<const CancellationFlag>(item, &item->cancellation),
                             std::make_unique<Reporter>(weak_from_this(), path, std::move(onUpdate), item));
}

std::shared_ptr<VantrelEngine::WorkItem> VantrelEngine::registerWorkItem(const std::string& path) {
    auto item = std::make_shared<WorkItem>();
    tables_.with([&](Tables& tables) {
        std::shared_ptr<WorkItem>& place = tables.activeWorkItems[path];
        if (place) place->cancellation.cancel();
        place = item;
    });
    return item;
}

// Whether the walk was still wanted. The flag is looked at under the lock that every canceller holds, so a
// cancelled walk stores nothing in any race.
bool VantrelEngine::storeResult(const std::string& path, const WorkItem& item, WalkTotals totals) {
    const Seconds now = clock_.now();
    return tables_.with([&](Tables& tables) {
        if (item.cancellation.isCancelled()) return false;
        tables.cache[path] = {totals, now};
        tables.activeWorkItems.erase(path);
        return true;
    });
}

bool VantrelEngine::markEnded(WorkItem& item) {
    return tables_.with([&](Tables&) {
        if (item.cancellation.isCancelled()) return false;
        item.stage = WalkStage::ended;
        return true;
    });
}

std::optional<WalkTotals> VantrelEngine::cachedSize(const std::string& path) const {
    const Seconds now = clock_.now();
    return tables_.with([&](const Tables& tables) -> std::optional<WalkTotals> {
        const auto found = tables.cache.find(path);
        if (found == tables.cache.end() || now - found->second.timestamp >= cacheLifetime)
            return std::nullopt;
        return found->second.totals;
    });
}

bool VantrelEngine::isCalculating(const std::string& path) const {
    return tables_.with([&](const Tables& tables) {
        const auto found = tables.activeWorkItems.find(path);
        return found != tables.activeWorkItems.end() && found->second->stage == WalkStage::inFlight;
    });
}

void VantrelEngine::cancelFor(const std::string& path) {
    tables_.with([&](Tables& tables) {
        const auto found = tables.activeWorkItems.find(path);
        if (found == tables.activeWorkItems.end()) return;
        found->second->cancellation.cancel();
        tables.activeWorkItems.erase(found);
    });
}

void VantrelEngine::cancelForPrefix(std::string_view prefix) {
    if (prefix.empty()) return;
    tables_.with([&](Tables& tables) {
        std::erase_if(tables.activeWorkItems, [&](const auto& entry) {
            if (!entry.first.starts_with(prefix)) return false;
            entry.second->cancellation.cancel();
            return true;
        });
    });
}

void VantrelEngine::cancelAll() {
    tables_.with([](Tables& tables) {
        for (const auto& [path, item] : tables.activeWorkItems) item->cancellation.cancel();
        tables.activeWorkItems.clear();
    });
}

std::optional<VolumeCapacity> VantrelEngine::getVolumeCapacity(FileManager& files, const std::string& path) {
    return files.volumeCapacity(path);
}

}  // namespace vantrel
