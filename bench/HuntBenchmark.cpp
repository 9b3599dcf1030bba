// A hunt for what takes room, see Hunt.h, through the whole program but its window: real files and threads,
// both panels, and the fakes of the tests for fonts, timers and the like. bench/hunt runs it.
//   hunt-benchmark FOLDER EMPTY LEVELS [--without-memory]
// What is thrown away goes to the trash of $XDG_DATA_HOME. EMPTY is an empty folder, for the other panel.
// "Without memory" walks remember nothing for each other.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Hunt.h"
#include "base/Precondition.h"
#include "posix/CoarseCalendar.h"
#include "posix/CoarseClock.h"
#include "posix/DirectoryReaders.h"
#include "posix/SystemClock.h"
#include "posix/files/PosixFileManager.h"
#include "support/FakeDesktop.h"
#include "walk/KnownTotals.h"
#include "walk/WalkPool.h"

namespace vantrel::bench {
namespace {

enum class Memory : std::uint8_t { none, ofWalks };

constexpr std::chrono::milliseconds spinnerInterval{150};

// Put together as the desktop does. Kept for ever, like the threads of the pool.
std::shared_ptr<VantrelEngine> makeEngine(MainQueue& queue, Memory memory) {
    const auto& clock = *new SystemClock;
    auto* const known = memory == Memory::ofWalks ? new KnownTotals(clock, *new CoarseCalendar) : nullptr;
    auto& pool = *new WalkPool(
        *new CoarseClock,
        {.makeReader = makeNativeReader, .descriptorBudget = descriptorBudgetOfWalks(), .known = known});
    return VantrelEngine::make(
        {.calculationQueue = pool, .mainQueue = queue, .clock = clock, .known = known});
}

void play(const std::string& folder, const std::string& empty, int levels, Memory memory) {
    auto& desktop = *new test::FakeDesktop;
    auto& files = *new PosixFileManager;
    desktop.process.currentDirectory = desktop.process.home = empty;
    desktop.engine = makeEngine(desktop.mainQueue, memory);
    const auto commander =
        OvCommanderView::make(desktop.portsWith(files), *desktop.engine, {0, 0, 1100, 720});
    auto nextTick = std::chrono::steady_clock::now() + spinnerInterval;
    const auto waitUntil = [&](const std::function<bool()>& holds) {
        const bool happened = desktop.mainQueue.runUntil([&] {
            if (const auto now = std::chrono::steady_clock::now(); now >= nextTick) {
                desktop.timers.tickAll();
                nextTick = now + spinnerInterval;
            }
            return holds();
        });
        precondition(happened, "some size does not come");
    };
    Hunt(*commander, waitUntil).play(folder, levels);
    std::_Exit(0);  // without waiting for the pool's threads
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
    using vantrel::bench::Memory;
    const std::string_view option = argc > 4 ? argv[4] : "";
    const int levels = argc > 3 ? std::atoi(argv[3]) : 0;
    if (argc < 4 || levels < 0 || (!option.empty() && option != "--without-memory")) {
        std::fputs("Usage: hunt-benchmark FOLDER EMPTY LEVELS [--without-memory]\n", stderr);
        return 2;
    }
    vantrel::bench::play(argv[1], argv[2], levels, option.empty() ? Memory::ofWalks : Memory::none);
}
