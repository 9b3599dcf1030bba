// Walks of small trees with everything in the cache, per entry, by number of threads. What a tree of half a
// million entries takes, and how other tools fare with it, is measured by bench/compare.
#include <benchmark/benchmark.h>

#include <condition_variable>
#include <mutex>

#include "BenchmarkTree.h"
#include "posix/CoarseClock.h"
#include "posix/DirectoryReaders.h"
#include "walk/CheckedSum.h"
#include "walk/WalkPool.h"

namespace vantrel::bench {
namespace {

// Sums what walks end with, and waits for a number of ends.
class Ends {
public:
    void note(WalkTotals totals) {
        std::lock_guard lock(lock_);
        addChecked(sum_, totals);
        if (++count_ == expected_) changed_.notify_one();
    }

    WalkTotals waitFor(int count) {
        std::unique_lock lock(lock_);
        expected_ = count;
        changed_.wait(lock, [&] { return count_ >= count; });
        count_ = 0;
        expected_ = 0;
        return std::exchange(sum_, {});
    }

private:
    std::mutex lock_;
    std::condition_variable changed_;
    WalkTotals sum_;
    int count_ = 0;
    int expected_ = 0;
};

class EndObserver final : public WalkObserver {
public:
    explicit EndObserver(Ends& ends) : ends_(ends) {}
    void walkDidProgress(WalkTotals) override {}
    void walkDidEnd(WalkOutcome, WalkTotals totals) override { ends_.note(totals); }

private:
    Ends& ends_;
};

class Bench {
public:
    explicit Bench(const WalkPool::Options& options) : pool_(clock_, options) {}

    void submit(const std::string& root) { pool_.submit(root, {}, std::make_unique<EndObserver>(ends_)); }
    WalkTotals waitFor(int count) { return ends_.waitFor(count); }

private:
    CoarseClock clock_;
    Ends ends_;
    WalkPool pool_;
};

WalkPool::Options threads(benchmark::State& state) {
    return {.makeReader = makeNativeReader,
            .descriptorBudget = descriptorBudgetOfWalks(),
            .threads = static_cast<unsigned>(state.range(0))};
}

void walkOnce(benchmark::State& state, const BenchmarkTree& tree, const WalkPool::Options& options) {
    Bench bench(options);
    for (auto _ : state) {
        bench.submit(tree.root());
        if (bench.waitFor(1).items != tree.files()) state.SkipWithError("wrong total");
    }
    state.SetItemsProcessed(state.iterations() * tree.files());
}

// 200 folders of 100 files.
void wide(benchmark::State& state) {
    static const BenchmarkTree tree({.folders = 200, .filesPerFolder = 100});
    walkOnce(state, tree, threads(state));
}

void wideWithThePortableReader(benchmark::State& state) {
    static const BenchmarkTree tree({.folders = 200, .filesPerFolder = 100});
    auto options = threads(state);
    options.makeReader = makePortableReader;
    walkOnce(state, tree, options);
}

// 20,000 files in one folder: a folder that several threads read.
void flat(benchmark::State& state) {
    static const BenchmarkTree tree({.folders = 1, .filesPerFolder = 20'000});
    walkOnce(state, tree, threads(state));
}

// 1,000 folders, each in the one before: nothing can run side by side.
void chain(benchmark::State& state) {
    static const BenchmarkTree tree({.depth = 1000});
    walkOnce(state, tree, threads(state));
}

// The same 200 folders as 200 walks, as a panel asks for them.
void manyWalks(benchmark::State& state) {
    static const BenchmarkTree tree({.folders = 200, .filesPerFolder = 100});
    Bench bench(threads(state));
    for (auto _ : state) {
        for (int i = 0; i < 200; ++i) bench.submit(tree.folder(i));
        if (bench.waitFor(200).items != tree.files()) state.SkipWithError("wrong total");
    }
    state.SetItemsProcessed(state.iterations() * tree.files());
}

// 2,000 walks of empty folders: what a walk costs by itself.
void emptyWalks(benchmark::State& state) {
    static const BenchmarkTree tree({.folders = 2000});
    Bench bench(threads(state));
    for (auto _ : state) {
        for (int i = 0; i < 2000; ++i) bench.submit(tree.folder(i));
        if (bench.waitFor(2000).items != 0) state.SkipWithError("wrong total");
    }
    state.SetItemsProcessed(state.iterations() * 2000);
}

void byThreads(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("threads")
        ->Arg(1)
        ->Arg(2)
        ->Arg(4)
        ->Arg(8)
        ->Arg(16)
        ->UseRealTime()
        ->MeasureProcessCPUTime();
    benchmark->Unit(benchmark::kMillisecond);
}

BENCHMARK(wide)->Apply(byThreads);
BENCHMARK(wideWithThePortableReader)->Apply(byThreads);
BENCHMARK(flat)->Apply(byThreads);
BENCHMARK(chain)->Apply(byThreads);
BENCHMARK(manyWalks)->Apply(byThreads);
BENCHMARK(emptyWalks)->Apply(byThreads);

}  // namespace
}  // namespace vantrel::bench

BENCHMARK_MAIN();
