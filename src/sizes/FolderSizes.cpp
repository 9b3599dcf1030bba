#include "sizes/FolderSizes.h"

#include <memory>
#include <utility>

#include "base/Paths.h"
#include "sizes/FolderContents.h"
#include "walk/CheckedSum.h"

namespace vantrel::sizes {

namespace {

constexpr Seconds progressInterval{0.1};

}  // namespace

WalkTotals FolderSizes::total() const {
    WalkTotals total = own;
    for (const Row& row : subfolders) addChecked(total, row.totals);
    return total;
}

// Brings the totals of a folder's own files to the main thread.
class SizesQuestion::OwnFilesObserver final : public WalkObserver {
public:
    explicit OwnFilesObserver(SizesQuestion& question) : question_(question) {}
    void walkDidProgress(WalkTotals soFar) override { post(soFar, 0); }
    void walkDidEnd(WalkOutcome, WalkTotals totals) override { post(totals, 1); }

private:
    void post(WalkTotals totals, std::size_t answers) {
        question_.services_.queue.post([&question = question_, totals, answers] {
            question.sizes_.own = totals;
            question.missing_ -= answers;
        });
    }

    SizesQuestion& question_;
};

std::error_code SizesQuestion::ask(const std::string& folder) {
    const auto reader = services_.pool.makeReader();
    const auto ownFiles =
        readFolder(*reader, folder, [&](const std::string& name) { askFor(paths::appending(folder, name)); });
    if (!ownFiles) return ownFiles.error();
    if (*ownFiles == OwnFiles::some) askForOwnFiles(folder);
    return {};
}

void SizesQuestion::askFor(const std::string& path) {
    const std::size_t index = sizes_.subfolders.size();
    sizes_.subfolders.push_back({path, {}});
    ++missing_;
    services_.engine.calculateVantrel(path,
                                      [this, index](std::int64_t bytes, std::int64_t items, bool isComplete) {
                                          sizes_.subfolders[index].totals = {bytes, items};
                                          if (!isComplete) return;
                                          ++finishedFolders_;
                                          --missing_;
                                      });
}

void SizesQuestion::askForOwnFiles(const std::string& folder) {
    ++missing_;
    services_.pool.submit(folder, {}, std::make_unique<OwnFilesObserver>(*this),
                          WalkPool::Reach::ownFilesOnly);
}

void SizesQuestion::countWithoutThreads() {
    while (missing_ > 0 && services_.pool.catchUp(progressInterval))
        if (!services_.queue.runAfter(missing_, Seconds(0))) return;
}

Interrupted SizesQuestion::wait(const OnProgress& onProgress) {
    while (missing_ > 0) {
        // Each missing answer is a task still to come, so fewer tasks cannot be the end.
        if (!services_.queue.runAfter(missing_, progressInterval)) return Interrupted::yes;
        if (missing_ > 0) onProgress(*this);
    }
    return Interrupted::no;
}

}  // namespace vantrel::sizes
