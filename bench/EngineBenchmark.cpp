// What a request to the engine costs beside the walk itself: bookkeeping, the way to the main thread, an
// answer from the cache, cancelling by prefix.
#include <benchmark/benchmark.h>

#include <condition_variable>
#include <mutex>
#include <vector>

#include "BenchmarkTree.h"
#include "model/engine/VantrelEngine.h"
#include "posix/CoarseClock.h"
#include "posix/DirectoryReaders.h"
#include "walk/WalkPool.h"

namespace vantrel::bench {
namespace {

// The main thread's tasks, run by hand.
class CollectingQueue final : public MainQueue {
public:
    void post(Task task) override {
        std::lock_guard lock(lock_);
        tasks_.push_back(std::move(task));
        if (wanted_ > 0 && tasks_.size() >= wanted_) enough_.notify_one();
    }

    /// Runs what is there once `count` tasks are.
    void run(std::size_t count) {
        std::unique_lock lock(lock_);
        wanted_ = count;
        enough_.wait(lock, [&] { return tasks_.size() >= count; });
        const auto tasks = std::exchange(tasks_, {});
        lock.unlock();
        for (const Task& task : tasks) task();
    }

private:
    std::mutex lock_;
    std::condition_variable enough_;
    std::vector<Task> tasks_;
    std::size_t wanted_ = 0;
};

// Ends every walk at once, or never begins it.
class InstantWalks final : public WalkQueue {
public:
    void submit(std::string, std::stop_token, std::unique_ptr<WalkObserver> observer) override {
        if (!answers) return;
        observer->walkDidBegin();
        observer->walkDidEnd(WalkOutcome::finished, {4096, 1});
    }
    bool answers = true;
};

// Far enough on at each request that no earlier answer is believed.
class LeapingClock final : public Clock {
public:
    Seconds now() const override { return now_; }
    void leap() { now_ += 2 * VantrelEngine::cacheLifetime; }

private:
    Seconds now_{0};
};

std::vector<std::string> manyPaths(int count) {
    std::vector<std::string> paths;
    paths.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) paths.push_back("/home/ann/pictures/holiday/folder" + std::to_string(i));
    return paths;
}

constexpr int requests = 10'000;

// An engine whose walks take no time, and a panel with 10,000 folders.
struct Asking {
    void ask() {
        const auto above = std::make_shared<const Ancestry>(Ancestry(5));
        std::uint64_t folder = 0;
        for (const auto& path : paths)
            engine->calculateVantrel(path, [this](std::int64_t bytes, std::int64_t, bool) { sum += bytes; },
                                     {FileIdentity{1, ++folder}, above});
    }

    // Asks for all of them and waits for the answers; whether these are right.
    bool isAnswered() {
        sum = 0;
        ask();
        queue.run(requests);
        return sum == requests * 4096LL;
    }

    const std::vector<std::string> paths = manyPaths(requests);
    InstantWalks walks;
    CollectingQueue queue;
    LeapingClock clock;
    const std::shared_ptr<VantrelEngine> engine = VantrelEngine::make({walks, queue, clock});
    std::int64_t sum = 0;
};

void requestWithoutAWalk(benchmark::State& state) {
    Asking panel;
    for (auto _ : state) {
        panel.clock.leap();
        if (!panel.isAnswered()) state.SkipWithError("wrong total");
    }
    state.SetItemsProcessed(state.iterations() * requests);
}

void requestFromTheCache(benchmark::State& state) {
    Asking panel;
    if (!panel.isAnswered()) state.SkipWithError("wrong total");
    panel.walks.answers = false;
    for (auto _ : state) {
        if (!panel.isAnswered()) state.SkipWithError("wrong total");
    }
    state.SetItemsProcessed(state.iterations() * requests);
}

// A file moved from one folder to another, while 10,000 totals elsewhere are known.
void changeBesideKnownTotals(benchmark::State& state) {
    Asking panel;
    if (!panel.isAnswered()) state.SkipWithError("wrong total");
    const auto itemAt = [](const std::string& path) {
        return ContentsChange::Item{.path = path, .identities = {{2, 1}}, .above = Ancestry(6, {2, 2})};
    };
    for (auto _ : state) {
        panel.engine->contentsDidChange(
            ContentsChange({itemAt("/home/ann/music/here/file"), itemAt("/home/ann/music/there/file")}));
    }
    if (!panel.engine->cachedSize(panel.paths.front())) state.SkipWithError("outdated");
}

// A request and its cancellation by the prefix of 10,000 paths.
void requestCancelledByPrefix(benchmark::State& state) {
    Asking panel;
    panel.walks.answers = false;
    for (auto _ : state) {
        panel.ask();
        panel.engine->cancelForPrefix("/home/ann/pictures");
        if (panel.engine->isCalculating(panel.paths.front())) state.SkipWithError("not cancelled");
    }
    state.SetItemsProcessed(state.iterations() * requests);
}

// 200 folders of 100 files through the real pool, as a panel asks for them: compare with `manyWalks` of the
// walk's benchmark.
void requestsOfRealFolders(benchmark::State& state) {
    static const BenchmarkTree tree({.folders = 200, .filesPerFolder = 100});
    CoarseClock coarse;
    WalkPool pool(coarse, {.makeReader = makeNativeReader, .descriptorBudget = descriptorBudgetOfWalks()});
    CollectingQueue queue;
    LeapingClock clock;
    const auto engine = VantrelEngine::make({pool, queue, clock});
    for (auto _ : state) {
        std::int64_t items = 0;
        clock.leap();
        for (int i = 0; i < 200; ++i) {
            engine->calculateVantrel(tree.folder(i),
                                     [&items](std::int64_t, std::int64_t count, bool isComplete) {
                                         if (isComplete) items += count;
                                     });
        }
        while (items < tree.files()) queue.run(1);
    }
    state.SetItemsProcessed(state.iterations() * tree.files());
}

BENCHMARK(requestWithoutAWalk)->Unit(benchmark::kMillisecond);
BENCHMARK(requestFromTheCache)->Unit(benchmark::kMillisecond);
BENCHMARK(changeBesideKnownTotals)->Unit(benchmark::kMillisecond);
BENCHMARK(requestCancelledByPrefix)->Unit(benchmark::kMillisecond);
BENCHMARK(requestsOfRealFolders)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

}  // namespace
}  // namespace vantrel::bench

BENCHMARK_MAIN();
