// What a large folder costs on the main thread.
//   list/N         a folder of N files on disk is read, made into rows and sorted by name
//   sort/FIELD/N   N rows in listing order are sorted by a field, sort keys included
//   arrival/N      one of N folders gets its total and the list, sorted by size, is put in order again; the
//                  other walks go on, so a few running totals have changed as well
//   spinnerTick/N  one tick of the spinner while N folders are being measured
// Names mix words, numbers, letter case and a few accents from a fixed seed; files are empty.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include "panel/ItemOrder.h"
#include "panel/OvPanelView.h"
#include "posix/files/PosixFileManager.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace vantrel;

std::string randomName(std::mt19937& random, std::size_t number) {
    static constexpr const char* words[] = {"Report", "photo", "IMG_", "backup-",
                                            "Über ",  "note",  "lib",  "x"};
    static constexpr const char* extensions[] = {".txt", ".JPG", ".tar.gz", "", ".c", ".pdf"};
    return words[random() % 8] + std::to_string(random() % 100'000) + "_" + std::to_string(number) +
           extensions[random() % 6];
}

// Built once for all runs of one size: making 100,000 files takes longer than listing them a hundred times.
const std::string& folderOfFiles(std::size_t count) {
    static std::map<std::size_t, std::unique_ptr<test::TemporaryFolder>> folders;
    auto& folder = folders[count];
    if (!folder) {
        folder = std::make_unique<test::TemporaryFolder>();
        std::mt19937 random(1);
        for (std::size_t number = 0; number < count; ++number) folder->makeFile(randomName(random, number));
    }
    return folder->path();
}

ItemList randomFiles(std::size_t count) {
    std::mt19937 random(2);
    ItemList items;
    for (std::size_t number = 0; number < count; ++number) {
        items.push_back(
            std::make_shared<FileItem>(FileItemFields{.name = randomName(random, number),
                                                      .path = "/d",
                                                      .size = static_cast<std::int64_t>(random()),
                                                      .modDate = FileTime(std::chrono::seconds(random()))}));
    }
    return items;
}

void list(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    test::FakeDesktop desktop;
    PosixFileManager files;
    const auto panel = OvPanelView::make(desktop.portsWith(files), *desktop.engine);
    panel->setFrame({0, 0, 549, 648});
    panel->setCurrentPath(folderOfFiles(count));
    for (auto _ : state) {
        panel->loadDirectory();
        if (panel->items().size() != count + 1) state.SkipWithError("wrong number of rows");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(list)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void sort(benchmark::State& state, SortField field) {
    for (auto _ : state) {
        state.PauseTiming();
        ItemList items = randomFiles(static_cast<std::size_t>(state.range(0)));
        state.ResumeTiming();
        sortItems(items, field, SortDirection::ascending);
        benchmark::DoNotOptimize(items.data());
        state.PauseTiming();
        items.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(sort, name, SortField::name)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sort, size, SortField::size)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sort, date, SortField::date)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sort, ext, SortField::ext)->Arg(100'000)->Unit(benchmark::kMillisecond);

void arrival(benchmark::State& state, SortDirection direction) {
    std::mt19937 random(3);
    ItemList items;
    for (int number = 0; number < state.range(0); ++number) {
        items.push_back(std::make_shared<FileItem>(FileItemFields{.name = "d" + std::to_string(number),
                                                                  .path = "/d",
                                                                  .isDirectory = true,
                                                                  .vantrelState = state::Calculating{}}));
    }
    const ItemList arriving = items;
    std::size_t next = 0;
    ChangedRows changed;
    const auto grow = [&](std::size_t place, unsigned most) {
        FileItem& row = *arriving[place % arriving.size()];
        row.vantrelState =
            state::Calculating{row.effectiveSize() + static_cast<std::int64_t>(random() % most), 1};
        changed.add(row);
    };
    for (auto _ : state) {
        for (std::size_t ahead = 1; ahead <= 4; ++ahead) grow(next + ahead, 1'000'000);
        grow(next, 10'000'000);
        ++next;
        sortChangedSizes(items, changed, direction);
        changed.clear();
    }
}
BENCHMARK_CAPTURE(arrival, ascending, SortDirection::ascending)->Arg(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(arrival, descending, SortDirection::descending)->Arg(10'000)->Unit(benchmark::kMicrosecond);

void spinnerTick(benchmark::State& state) {
    test::FakeDesktop desktop;
    for (int number = 0; number < state.range(0); ++number) {
        desktop.files.addFolder("/d", "d" + std::to_string(number));
    }
    const auto panel = OvPanelView::make(desktop.ports(), *desktop.engine);
    panel->setFrame({0, 0, 549, 648});
    panel->setCurrentPath("/d");
    for (auto _ : state) desktop.timers.tickAll();
}
BENCHMARK(spinnerTick)->Arg(10'000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
