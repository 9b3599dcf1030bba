#include "posix/files/PendingCopy.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "posix/files/ExclusiveRename.h"
#include "posix/files/OriginalCheck.h"
#include "posix/files/Trees.h"
#include "posix/files/WrittenFiles.h"

namespace vantrel {

std::error_code PendingCopy::makeWorkplace() {
    Result<Workplace> made = Workplace::make(target_.folder, Workplace::Purpose::copy);
    if (!made) return made.error();
    workplace_.emplace(std::move(*made));
    return {};
}

std::error_code PendingCopy::make(const ItemReference& source, const struct stat& status,
                                  TreeRecord* record) {
    if (const std::error_code error = makeWorkplace()) return error;
    WrittenFiles written(workplace_->number());
    const CopyTask task{written, stop_, record};
    if (const std::error_code error = copyTree(task, source, status, outOfSight())) return error;
    if (const std::error_code refused = written.flush()) return refused;
    return task.goOn();
}

std::error_code PendingCopy::putInPlace() {
    if (const std::error_code error = renameBetweenFolders(outOfSight(), target_)) return error;
    if (const Result<struct stat> status = statusOf(target_)) seen_ = status->st_ctim;
    workplace_.reset();
    const std::error_code unflushed = flushFolder(target_.folder);
    if (unflushed && !makeWorkplace()) (void)renameBetweenFolders(target_, outOfSight());
    return unflushed;
}

void PendingCopy::takeBack(const TreeRecord& record) {
    const Result<struct stat> status = statusOf(target_);
    if (!status || !ItemState::isSame(status->st_ctim, seen_) || makeWorkplace()) return;
    if (renameBetweenFolders(target_, outOfSight())) return;
    if (checkCopy(record, outOfSight(), seen_)) (void)renameToFreeName(outOfSight(), target_);
    workplace_.reset();
}

}  // namespace vantrel
