// What final totals cost the main thread: a panel sorted by size shows thousands of empty sub-folders, whose
// walks end faster than their reports can be served. Without and with the spinner, in both directions.
//   report-benchmark [SUB-FOLDERS]...      10,000 and 30,000 by default
// Prints for each case how many final reports were served, how often the rows were put in order, the main
// thread's processor time, and by how much the process has grown in the meantime.
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "model/engine/VantrelEngine.h"
#include "panel/OvPanelView.h"
#include "posix/CoarseClock.h"
#include "posix/DirectoryReaders.h"
#include "posix/files/PosixFileManager.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"
#include "walk/WalkPool.h"

namespace vantrel::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds spinnerInterval{150};

enum class Spinner : std::uint8_t { stands, turns };

struct Case {
    int rows;
    SortDirection direction;
    Spinner spinner;
};

double threadMilliseconds() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Of this process, in KiB, as proc(5) says.
long residentMemory() {
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    long size = 0;
    long resident = 0;
    if (file == nullptr || std::fscanf(file, "%ld %ld", &size, &resident) != 2) std::abort();
    std::fclose(file);
    return resident * 4;
}

/// Counts what it serves.
class CountingQueue final : public MainQueue {
public:
    void post(Task task) override {
        queue_.post([this, task = std::move(task)] {
            ++served;
            task();
        });
    }
    void serve() { queue_.runOnce(); }
    std::size_t waiting() const { return queue_.size(); }
    long served = 0;

private:
    test::ManualMainQueue queue_;
};

void run(const Case& given, const std::string& folder) {
    // Kept for ever, like the threads of the pool.
    auto& queue = *new CountingQueue;
    auto& desktop = *new test::FakeDesktop;
    auto& files = *new PosixFileManager;
    const auto& clock = *new CoarseClock;
    const auto engine =
        VantrelEngine::make({*new WalkPool(clock, {.makeReader = makeNativeReader,
                                                   .descriptorBudget = descriptorBudgetOfWalks()}),
                             queue, clock});
    const auto panel = OvPanelView::make(desktop.portsWith(files), *engine);
    panel->setSortField(SortField::size);
    panel->setSortDirection(given.direction);
    const long memory = residentMemory();
    long mostMemory = memory;
    panel->setCurrentPath(folder);
    const std::uint64_t ordered = panel->orderRevision();
    const double before = threadMilliseconds();
    auto nextTick = Clock::now() + spinnerInterval;
    while (panel->isCalculatingSizes() || queue.waiting() > 0) {
        queue.serve();
        if (Clock::now() < nextTick) continue;
        if (given.spinner == Spinner::turns) desktop.timers.tickAll();
        nextTick = Clock::now() + spinnerInterval;
        mostMemory = std::max(mostMemory, residentMemory());
    }
    std::printf("%6d rows %-10s %-8s %9ld reports %9llu sorts %9.0f ms %7.1f MiB\n", given.rows,
                given.direction == SortDirection::ascending ? "ascending" : "descending",
                given.spinner == Spinner::turns ? "spinner" : "none", queue.served,
                static_cast<unsigned long long>(panel->orderRevision() - ordered),
                threadMilliseconds() - before, static_cast<double>(mostMemory - memory) / 1024);
    std::fflush(stdout);
}

void run(int rows) {
    const test::TemporaryFolder folder;
    folder.makeFolder("tree");
    for (int row = 0; row < rows; ++row) folder.makeFolder("tree/folder" + std::to_string(row));
    for (const SortDirection direction : {SortDirection::ascending, SortDirection::descending}) {
        for (const Spinner spinner : {Spinner::stands, Spinner::turns})
            run({rows, direction, spinner}, folder.path("tree"));
    }
    std::filesystem::remove_all(folder.path("tree"));
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
    std::vector<int> sizes;
    for (int index = 1; index < argc; ++index) sizes.push_back(std::atoi(argv[index]));
    if (sizes.empty()) sizes = {10'000, 30'000};
    for (const int rows : sizes) vantrel::bench::run(rows);
    return 0;
}
