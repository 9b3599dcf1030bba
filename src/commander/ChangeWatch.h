#pragma once

#include <string>
#include <vector>

#include "model/engine/ContentsChange.h"
#include "platform/FileManager.h"

namespace vantrel {

/// Finds out what a change of files outdates. It looks at the places concerned twice, since a change may take
/// away, or bring, what leads to them: when it is made, before the change, and after it, also when that has
/// failed. Main thread only; `files` is borrowed.
class ChangeWatch {
public:
    /// `paths` are absolute: of the items that come, go or change.
    ChangeWatch(FileManager& files, std::vector<std::string> paths);

    ContentsChange afterChange() const;

    /// The same after the first item was to be taken away, to where the others are.
    ContentsChange afterTakingAway() const;

    /// The same after a move of the first item to the second.
    ContentsChange afterMove() const;

private:
    using Items = std::vector<ContentsChange::Item>;

    ContentsChange::Item look(const std::string& path) const;
    Items lookAgain() const;
    Items lookForWhatWasTakenAway() const;

    FileManager& files_;
    Items before_;
};

}  // namespace vantrel
