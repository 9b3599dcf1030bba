// What a request to the engine costs beside the walk itself: bookkeeping, the way to the main thread, an
// answer from the cache, cancelling by prefix.
#include <benchmark/benchmark.h>

#include <condition_variable>
#include <mutex>
#include <vector>

#include "BenchmarkTree.h"
#include "model/VantrelEngine.h"
#include "platform/posix/CoarseClock.h"
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
    void submit(std::string, std::shared_ptr<const CancellationFlag>,
                std::unique_ptr<WalkObserver> observer) override {
        if (answers) observer->walkDidEnd(WalkOutcome::finished, {4096, 1});
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
    for (int i = 0; i < count; ++i) paths.push_back("/home/ann/pictures/holiday/folder" + std::to_string(i));
    return paths;
}

constexpr int requests = 10'000;

void ask(VantrelEngine& engine, const std::vector<std::string>& paths, std::int64_t& sum) {
    for (const auto& path : paths)
        engine.calculateVantrel(path, [&sum](std::int64_t bytes, std::int64_t, bool) { sum += bytes; });
}

void requestWithoutAWalk(benchmark::State& state) {
    const auto paths = manyPaths(requests);
    InstantWalks walks;
    CollectingQueue queue;
    LeapingClock clock;
    const auto engine = VantrelEngine::make({walks, queue, clock});
    for (auto _ : state) {
        std::int64_t sum = 0;
        clock.leap();
        ask(*engine, paths, sum);
        queue.run(requests);
        if (sum != requests * 4096LL) state.SkipWithError("wrong total");
    }
    state.SetItemsProcessed(state.iterations() * requests);
}

void requestFromTheCache(benchmark::State& state) {
    const auto paths = manyPaths(requests);
    InstantWalks walks;
    CollectingQueue queue;
    LeapingClock clock;
    const auto engine = VantrelEngine::make({walks, queue, clock});
    std::int64_t sum = 0;
    ask(*engine, paths, sum);
    queue.run(requests);
    walks.answers = false;
    for (auto _ : state) {
        sum = 0;
        ask(*engine, paths, sum);
        queue.run(requests);
        if (sum != requests * 4096LL) state.SkipWithError("wrong total");
    }
    state.SetItemsProcessed(state.iterations() * requests);
}

// A request and its cancellation by the prefix of 10,000 paths.
void requestCancelledByPrefix(benchmark::State& state) {
    const auto paths = manyPaths(requests);
    InstantWalks walks;
    walks.answers = false;
    CollectingQueue queue;
    LeapingClock clock;
    const auto engine = VantrelEngine::make({walks, queue, clock});
    std::int64_t sum = 0;
    for (auto _ : state) {
        ask(*engine, paths, sum);
        engine->cancelForPrefix("/home/ann/pictures");
        if (engine->isCalculating(paths.front())) state.SkipWithError("not cancelled");
    }
    state.SetItemsProcessed(state.iterations() * requests);
}

// 200 folders of 100 files through the real pool, as a panel asks for them: compare with `manyWalks` of the
// walk's benchmark.
void requestsOfRealFolders(benchmark::State& state) {
    static const BenchmarkTree tree({.folders = 200, .filesPerFolder = 100});
    CoarseClock coarse;
    WalkPool pool(coarse);
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
BENCHMARK(requestCancelledByPrefix)->Unit(benchmark::kMillisecond);
BENCHMARK(requestsOfRealFolders)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

}  // namespace
}  // namespace vantrel::bench

BENCHMARK_MAIN();
