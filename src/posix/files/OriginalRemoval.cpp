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

/// Whether nothing more can be made there. The original then gets a hidden name where it is: that needs no
/// room.
bool isFull(const std::error_code& error) {
    return error == std::errc::no_space_on_device || error == std::errc::too_many_links ||
           error == std::error_code(EDQUOT, std::generic_category());
}

}  // namespace

std::error_code OriginalRemoval::run() {
    Result<Workplace> made = Workplace::make(original_.folder, Workplace::Purpose::original);
    if (!made && !isFull(made.error())) return made.error();
    if (made) workplace_.emplace(std::move(*made));
    aside_ = workplace_ ? ItemReference{workplace_->number(), original_.name}
                        : ItemReference{original_.folder, nameAside(original_.name)};
    const std::error_code error = record_.top().state.isFolder() ? removeFolder() : removeLeaf();
    workplace_.reset();
    // If a power cut brings the original back, nothing is lost: there are then two.
    (void)flushFolder(original_.folder);
    return error;
}

std::error_code OriginalRemoval::removeLeaf() {
    return RecordedRemoval(record_, original_, copy_, aside_).run();
}

std::error_code OriginalRemoval::removeFolder() {
    if (const std::error_code refused = renameBetweenFolders(original_, aside_))
        return isGone(original_) ? std::error_code() : refused;
    if (const std::error_code error = checkSetAside(record_, aside_, copy_)) return putBack(error);
    RecordedRemoval removal(record_, aside_, copy_, {workplace_ ? workplace_->number() : -1, ""});
    const std::error_code error = removal.run();
    hasKeptAll_ = !removal.hasRemovedAny();
    return error ? putBack(error) : std::error_code();
}

std::error_code OriginalRemoval::putBack(std::error_code reason) {
    // Retried, so that a passing error does not leave the original out of sight.
    for (int attempt = 0; attempt < 3 && renameToFreeName(aside_, original_); ++attempt) {
    }
    return reason;
}

}  // namespace vantrel
