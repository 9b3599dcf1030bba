#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/Result.h"
#include "model/engine/VantrelEngine.h"
#include "sizes/CommandLineQueue.h"
#include "sizes/SizesTable.h"
#include "walk/WalkPool.h"

namespace vantrel::sizes {

/// What the sizes of one folder turned out to be.
struct FolderSizes {
    std::vector<Row> subfolders;  ///< in the order of the directory
    WalkTotals own;               ///< of the files in the folder itself
    WalkTotals total() const;
};

enum class Interrupted : std::uint8_t { no, yes };

/// Asks an engine for the sizes of all sub-folders of one folder. Main thread only.
class SizesQuestion {
public:
    struct Services {
        VantrelEngine& engine;
        WalkPool& pool;  ///< the engine's
        CommandLineQueue& queue;
    };

    /// Called about ten times a second while sizes are missing.
    using OnProgress = std::function<void(const SizesQuestion&)>;

    explicit SizesQuestion(const Services& services) : services_(services) {}
    SizesQuestion(const SizesQuestion&) = delete;
    SizesQuestion& operator=(const SizesQuestion&) = delete;

    /// Starts counting; an error when `folder` cannot be read.
    [[nodiscard]] std::error_code ask(const std::string& folder);

    /// Counts on the calling thread where there is no other, until there is one or nothing left to count.
    void countWithoutThreads();

    /// Waits for all sizes.
    Interrupted wait(const OnProgress& onProgress);

    std::size_t folderCount() const { return sizes_.subfolders.size(); }
    std::size_t finishedCount() const { return finishedFolders_; }
    const FolderSizes& sizes() const { return sizes_; }

private:
    class OwnFilesObserver;

    void askFor(const std::string& path);
    void askForOwnFiles(const std::string& folder);

    Services services_;
    FolderSizes sizes_;
    std::size_t missing_ = 0;  // answers
    std::size_t finishedFolders_ = 0;
};

}  // namespace vantrel::sizes
