#include "Hunt.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "ProcessorTime.h"
#include "base/Precondition.h"

namespace vantrel::bench {

namespace {

/// Of this process, in KiB: at the highest, and now (proc(5)).
struct Memory {
    long peak = 0;
    long now = 0;
};

Memory memory() {
    std::FILE* const file = std::fopen("/proc/self/status", "r");
    precondition(file != nullptr, "the process's own memory is not to be seen");
    Memory memory;
    char line[256];
    while (std::fgets(line, sizeof line, file) != nullptr) {
        (void)std::sscanf(line, "VmHWM: %ld", &memory.peak);
        (void)std::sscanf(line, "VmRSS: %ld", &memory.now);
    }
    std::fclose(file);
    return memory;
}

void mark(const std::string& text) {
    (void)::faccessat(AT_FDCWD, text.c_str(), F_OK, 0);
}

/// A folder that is shown, and no link to one.
bool isOwnFolder(const FileItem& row) {
    return row.isDirectory && !row.isParentDir && !row.isSymlink;
}

}  // namespace

void Hunt::play(const std::string& folder, int levels) {
    panel().setShowHiddenFiles(true);
    panel().setSortField(SortField::size);
    panel().setSortDirection(SortDirection::descending);
    print("start", 0, 0);
    step("first", [&] { panel().setCurrentPath(folder); });
    if (levels == 0) return;
    int level = 0;
    for (; level < levels && selectLargestFolder(); ++level) {
        step("in " + std::to_string(level + 1), [&] { panel().activateCurrentItem(); });
    }
    step("trash", [&] { throwLargestAway(); });
    for (int up = 0; up < level; ++up) {
        step("out " + std::to_string(up + 1), [&] { panel().navigateUp(); });
    }
}

void Hunt::step(const std::string& name, const std::function<void()>& action) {
    mark("begin " + name);
    const double processorBefore = processorTime();
    const auto begin = std::chrono::steady_clock::now();
    action();
    waitUntil_([&] { return !panel().isCalculatingSizes(); });
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - begin;
    const double processor = processorTime() - processorBefore;
    mark("end " + name);
    print(name, wall.count(), processor);
}

void Hunt::print(const std::string& name, double wall, double processor) {
    std::int64_t bytes = 0;
    for (const auto& row : panel().items()) {
        const auto* const total = std::get_if<state::Calculated>(&row->vantrelState);
        if (total && isOwnFolder(*row)) bytes += total->totalBytes;
    }
    const auto [peak, now] = memory();
    std::printf("%s\t%.3f\t%.3f\t%ld\t%ld\t%zu\t%lld\t%s\n", name.c_str(), wall, processor, peak, now,
                panel().items().size(), static_cast<long long>(bytes), panel().currentPath().c_str());
    std::fflush(stdout);
}

bool Hunt::selectLargestFolder() {
    const ItemList& rows = panel().items();
    const auto largest = std::ranges::max_element(
        rows, {}, [](const auto& row) { return isOwnFolder(*row) ? row->effectiveSize() : -1; });
    if (largest == rows.end() || !isOwnFolder(**largest)) return false;
    panel().selectRow(largest - rows.begin());
    return true;
}

// A file where there is one: with the folder of a chain all that is below would go.
void Hunt::throwLargestAway() {
    const ItemList& rows = panel().items();
    const auto largest = std::ranges::max_element(rows, {}, [](const auto& row) {
        return row->isParentDir ? -1 : row->isDirectory ? 0 : 1 + row->effectiveSize();
    });
    precondition(largest != rows.end() && !(*largest)->isParentDir, "there is nothing to throw away");
    precondition(std::getenv("XDG_DATA_HOME") != nullptr, "a trash of its own has to be named");
    const std::string path = (*largest)->path;
    panel().selectRow(largest - rows.begin());
    commander_.setActive(panel());
    commander_.keyDown({.key = Key::f8});
    commander_.keyDown({.key = Key::returnKey});
    precondition(::faccessat(AT_FDCWD, path.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) != 0,
                 "what was thrown away is still there");
    std::printf("thrown away\t%s\n", path.c_str());
}

}  // namespace vantrel::bench
