#include "posix/files/OriginalRemoval.h"

#include <cerrno>
#include <utility>

#include "posix/files/ExclusiveRename.h"
#include "posix/files/Leftovers.h"
#include "posix/files/OriginalCheck.h"
#include "posix/files/RecordedRemoval.h"
#include "posix/files/WrittenFiles.h"

namespace vantrel {

namespace {

/// Nothing more can be made there. Then the original gets a hidden name where it is: that needs no room.
bool isFull(const std::error_code& error) {
    return error == std::errc::no_space_on_device || error == std::errc::too_many_links ||
           error == std::error_code(EDQUOT, std::generic_category());
}

}  // namespace

std::error_code OriginalRemoval::run() {
    Result<Workplace> made = Workplace::make(original_.folder.number(), Workplace::Purpose::original);
    if (!made && !isFull(made.error())) return made.error();
    if (made) workplace_.emplace(std::move(made.value()));
    asideFolder_ = workplace_ ? workplace_->number() : original_.folder.number();
    asideName_ = workplace_ ? original_.name : nameAside(original_.name);
    const std::error_code error = record_.top().state.isFolder() ? removeFolder() : removeLeaf();
    workplace_.reset();
    flushFolder(original_.folder.number());
    return error;
}

std::error_code OriginalRemoval::removeLeaf() {
    RecordedRemoval removal(record_, {original_.folder.number(), original_.name},
                            {copy_.folder.number(), copy_.name}, asideFolder_, asideName_);
    return removal.run();
}

std::error_code OriginalRemoval::removeFolder() {
    const int folder = original_.folder.number();
    const auto refused = renameBetweenFolders(folder, original_.name, asideFolder_, asideName_);
    if (refused) return isGone(folder, original_.name) ? std::error_code() : refused;
    const ItemReference aside{asideFolder_, asideName_};
    const ItemReference copy{copy_.folder.number(), copy_.name};
    if (const auto error = checkSetAside(record_, aside, copy)) return putBack(error);
    RecordedRemoval removal(record_, aside, copy, workplace_ ? workplace_->number() : -1);
    const std::error_code error = removal.run();
    hasKeptAll_ = !removal.hasRemovedAny();
    return error ? putBack(error) : std::error_code();
}

std::error_code OriginalRemoval::putBack(std::error_code reason) {
    const int folder = original_.folder.number();
    // Asked more than once, for an error that passes must not leave it out of sight.
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (renameToFreeName(asideFolder_, asideName_, folder, original_.name)) break;
    }
    return reason;
}

}  // namespace vantrel
