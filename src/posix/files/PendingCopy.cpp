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
    Result<Workplace> made = Workplace::make(target_.folder.number(), Workplace::Purpose::copy);
    if (!made) return made.error();
    workplace_.emplace(std::move(made.value()));
    return {};
}

std::error_code PendingCopy::make(const ItemPlace& source, const struct stat& status, TreeRecord* record) {
    if (const std::error_code error = makeWorkplace()) return error;
    WrittenFiles written(workplace_->number());
    const CopyTask task{written, stop_, record};
    const auto error =
        copyTree(task, source.folder.number(), source.name, status, workplace_->number(), target_.name);
    if (error) return error;
    if (const std::error_code refused = written.flush()) return refused;
    return task.goOn();
}

std::error_code PendingCopy::putInPlace() {
    const int folder = target_.folder.number();
    const auto error = renameBetweenFolders(workplace_->number(), target_.name, folder, target_.name);
    if (error) return error;
    if (const Result<struct stat> status = statusOf(folder, target_.name)) seen_ = status.value().st_ctim;
    workplace_.reset();
    const std::error_code unflushed = flushFolder(folder);
    if (unflushed && !makeWorkplace())
        (void)renameBetweenFolders(folder, target_.name, workplace_->number(), target_.name);
    return unflushed;
}

void PendingCopy::takeBack(const TreeRecord& record) {
    const int folder = target_.folder.number();
    const Result<struct stat> status = statusOf(folder, target_.name);
    if (!status || !ItemState::isSame(status.value().st_ctim, seen_) || makeWorkplace()) return;
    if (renameBetweenFolders(folder, target_.name, workplace_->number(), target_.name)) return;
    if (checkCopy(record, {workplace_->number(), target_.name}, seen_))
        (void)renameToFreeName(workplace_->number(), target_.name, folder, target_.name);
    workplace_.reset();
}

}  // namespace vantrel
