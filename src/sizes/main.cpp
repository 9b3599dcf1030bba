#include <unistd.h>

#include <cstdio>
#include <string>
#include <variant>
#include <vector>

#include "posix/CoarseClock.h"
#include "posix/DirectoryReaders.h"
#include "posix/StandardDescriptors.h"
#include "sizes/CommandLineQueue.h"
#include "sizes/FolderSizes.h"
#include "sizes/Interruption.h"
#include "sizes/LiveLine.h"
#include "sizes/SizesOptions.h"
#include "sizes/SizesTable.h"
#include "walk/CheckedSum.h"
#include "walk/WalkPool.h"

namespace vantrel::sizes {
namespace {

constexpr const char* help =
    "Usage: vantrel-sizes [--bytes] [--sort size|name] [FOLDER...]\n"
    "\n"
    "Shows the size and the number of items of each sub-folder of FOLDER, and of FOLDER\n"
    "itself; by default of the working directory. Sizes are what the disk has allocated.\n"
    "\n"
    "  --bytes             exact bytes, columns separated by tabs\n"
    "  --sort size|name    largest first (as by default), or by name\n"
    "  --help              show this text and leave\n"
    "  --version           show the version and leave\n";

constexpr const char* programName = "vantrel-sizes";

enum ExitStatus : int { success = 0, someFailed = 1, wrongUsage = 2 };

ExitStatus print(const char* text) {
    std::fputs(text, stdout);
    return deliverStandardOutput(programName) ? success : someFailed;
}

// What the program stands on; never destroyed, since a thread may be stuck in a system call for ever.
class Program {
public:
    explicit Program(Options options) : options_(std::move(options)) {}

    ExitStatus run() {
        WalkTotals total;
        for (const std::string& folder : options_.folders) addChecked(total, show(folder));
        if (options_.folders.size() > 1) print({"total", total});
        return deliverStandardOutput(programName) ? status_ : someFailed;
    }

private:
    WalkTotals show(const std::string& folder) {
        SizesQuestion question({*engine_, pool_, queue_});
        if (const auto error = question.ask(folder)) {
            std::fprintf(stderr, "vantrel-sizes: %s: %s\n", folder.c_str(), error.message().c_str());
            status_ = someFailed;
            return {};
        }
        wait(question);
        FolderSizes sizes = question.sizes();
        sortRows(sizes.subfolders, options_.order);
        for (const Row& row : sizes.subfolders) print(row);
        print({folder, sizes.total()});
        return sizes.total();
    }

    /// Leaves nothing of the line behind, whether it is interrupted or not.
    void wait(SizesQuestion& question) const {
        // Not with patience: this thread may hang in a system call, and has shown nothing yet.
        question.countWithoutThreads();
        const Interruption::Patience patience(interruption_);
        LiveLine live;
        if (question.wait([&live](const SizesQuestion& asked) { live.show(asked); }) == Interrupted::yes) {
            live.erase();
            interruption_.leave();
        }
    }

    void print(const Row& row) const {
        const std::string line = lineOf(row, options_.numbers, paths_);
        std::fwrite(line.data(), 1, line.size(), stdout);
    }

    const Options options_;
    const PathStyle paths_ = ::isatty(STDOUT_FILENO) == 1 ? PathStyle::harmless : PathStyle::raw;
    ExitStatus status_ = success;
    const Interruption interruption_ = Interruption::install();
    CommandLineQueue queue_{interruption_.descriptor()};
    const CoarseClock clock_;
    WalkPool pool_{clock_, {.makeReader = makeNativeReader, .descriptorBudget = descriptorBudgetOfWalks()}};
    const std::shared_ptr<VantrelEngine> engine_ = VantrelEngine::make({pool_, queue_, clock_});
};

struct Answer {
    ExitStatus operator()(const Options& options) const {
        static auto* const program = new Program(options);
        return program->run();
    }
    ExitStatus operator()(HelpRequest) const { return print(help); }
    ExitStatus operator()(VersionRequest) const { return print("vantrel-sizes " VANTREL_VERSION "\n"); }
    ExitStatus operator()(const UsageError& error) const {
        std::fprintf(stderr, "vantrel-sizes: %s\nTry \"vantrel-sizes --help\".\n", error.message.c_str());
        return wrongUsage;
    }
};

}  // namespace
}  // namespace vantrel::sizes

int main(int argc, char** argv) {
    vantrel::occupyStandardDescriptors();
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return std::visit(vantrel::sizes::Answer(), vantrel::sizes::parseArguments(arguments));
}
