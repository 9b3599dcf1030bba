// What the window adds to counting: the sizes of all sub-folders of FOLDER, asked for by a panel of a window
// on show, with rows that tick, spin and are painted, against the same question from the command line's
// engine.
//   window-benchmark FOLDER [name|size [ROUNDS]]    in which order the panel is
// Needs a display (Xvfb does). Prints medians of the rounds, in milliseconds, and of the rounds' ratios.

#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "ProcessorTime.h"
#include "app/AppDelegate.h"
#include "desktop/QtDesktop.h"
#include "model/engine/ContentsChange.h"
#include "model/engine/VantrelEngine.h"
#include "posix/CoarseClock.h"
#include "posix/DirectoryReaders.h"
#include "sizes/CommandLineQueue.h"
#include "sizes/FolderSizes.h"
#include "sizes/Interruption.h"
#include "support/TemporaryFolder.h"

namespace vantrel::bench {
namespace {

struct Cost {
    double wall = 0;       // milliseconds
    double processor = 0;  // milliseconds, of all threads
};

template <class Work>
Cost costOf(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    const double before = processorTime();
    work();
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - begin;
    return {wall.count(), processorTime() - before};
}

// As vantrel-sizes asks, without the start of a process. Kept for ever, like the threads of its pool.
class CommandLine {
public:
    void count(const std::string& folder) {
        sizes::SizesQuestion question({*engine_, pool_, queue_});
        if (question.ask(folder)) std::abort();
        question.wait([](const sizes::SizesQuestion&) {});
    }

private:
    const sizes::Interruption interruption_ = sizes::Interruption::install();
    sizes::CommandLineQueue queue_{interruption_.descriptor()};
    const CoarseClock clock_{};
    WalkPool pool_{clock_, {.makeReader = makeNativeReader, .descriptorBudget = descriptorBudgetOfWalks()}};
    const std::shared_ptr<VantrelEngine> engine_ = VantrelEngine::make({pool_, queue_, clock_});
};

// A window whose other panel shows nothing that would be counted.
class ShownWindow {
public:
    explicit ShownWindow(const std::string& emptyFolder)
        : desktop_("window-benchmark"),
          delegate_(desktop_.ports(), desktop_.engine(), {"window-benchmark", emptyFolder, emptyFolder}) {
        delegate_.applicationDidFinishLaunching();
        wait(500);
    }

    void sortBySize() { delegate_.sortBySize(); }

    void count(const std::string& folder) {
        OvPanelView& panel = delegate_.commanderView().leftPanel();
        panel.setCurrentPath(folder);
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [&] {
            if (!panel.isCalculatingSizes()) loop.quit();
        });
        look.start(std::chrono::milliseconds(2));
        loop.exec();
    }

    /// Nothing is known any more when the next round begins.
    void leave(const std::string& emptyFolder) {
        delegate_.commanderView().leftPanel().setCurrentPath(emptyFolder);
        wait(50);
        desktop_.engine().contentsDidChange(
            ContentsChange({{.path = emptyFolder, .afterwards = ContentsChange::Afterwards::inPart}}));
    }

private:
    static void wait(int milliseconds) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }

    QtDesktop desktop_;
    AppDelegate delegate_;
};

template <class Value>
double median(const std::vector<Cost>& costs, Value value) {
    std::vector<double> values;
    std::ranges::transform(costs, std::back_inserter(values), value);
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

void print(const char* name, const std::vector<Cost>& costs) {
    std::printf("%-16s wall %8.1f   processor %8.1f\n", name, median(costs, &Cost::wall),
                median(costs, &Cost::processor));
}

enum class Order : std::uint8_t { name, size };

void compare(const std::string& folder, Order order, int rounds) {
    // A new name for each count, so that no total comes from a cache.
    const test::TemporaryFolder names;
    names.makeFolder("empty");
    int number = 0;
    const auto newName = [&] {
        const std::string name = std::to_string(++number);
        names.makeLink(name, folder);
        return names.path(name);
    };
    static auto& commandLine = *new CommandLine;
    ShownWindow window(names.path("empty"));
    if (order == Order::size) window.sortBySize();
    commandLine.count(newName());
    std::vector<Cost> alone, shown, ratios;
    for (int round = 0; round < rounds; ++round) {
        std::string name = newName();
        alone.push_back(costOf([&] { commandLine.count(name); }));
        name = newName();
        shown.push_back(costOf([&] { window.count(name); }));
        window.leave(names.path("empty"));
        ratios.push_back(
            {shown.back().wall / alone.back().wall, shown.back().processor / alone.back().processor});
    }
    print("command line", alone);
    print("in the window", shown);
    std::printf("%-16s wall %8.3f   processor %8.3f\n", "ratio", median(ratios, &Cost::wall),
                median(ratios, &Cost::processor));
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
    using vantrel::bench::Order;
    const std::string order = argc > 2 ? argv[2] : "name";
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 11;
    if (argc < 2 || rounds < 1 || (order != "name" && order != "size")) {
        std::fputs("Usage: window-benchmark FOLDER [name|size [ROUNDS]]\n", stderr);
        return 2;
    }
    vantrel::bench::compare(std::filesystem::absolute(argv[1]), order == "size" ? Order::size : Order::name,
                            rounds);
    return 0;
}
