#include "posix/files/ExclusiveRename.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>

#include "base/SystemCall.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/TrashCan.h"
#include "posix/files/WrittenFiles.h"

namespace vantrel {

namespace {

[[nodiscard]] std::error_code rename(const ItemReference& from, const ItemReference& to) {
    return outcomeOf([&] { return ::renameat(from.folder, from.name.c_str(), to.folder, to.name.c_str()); });
}

/// A folder can replace nothing but an empty folder, so making one reserves the name.
[[nodiscard]] std::error_code renameOverReservedFolder(const ItemReference& from, const ItemReference& to) {
    const auto reserve = [&] { return ::mkdirat(to.folder, to.name.c_str(), 0700); };
    if (const std::error_code taken = outcomeOf(reserve)) return taken;
    const std::error_code error = rename(from, to);
    if (error) (void)unlinkItem(to, AT_REMOVEDIR);  // the rename's failure is the one to report
    return error;
}

/// Unlike rename(2), link(2) refuses a name that is taken.
[[nodiscard]] std::error_code renameBySecondName(const ItemReference& from, const ItemReference& to) {
    const auto link = [&] { return ::linkat(from.folder, from.name.c_str(), to.folder, to.name.c_str(), 0); };
    if (const std::error_code taken = outcomeOf(link)) return taken;
    const std::error_code error = unlinkItem(from);
    if (error) (void)unlinkItem(to);  // the first failure is the one to report
    return error;
}

/// Whether the file system or the kernel cannot rename without replacing.
bool isUnsupported(const std::error_code& error) {
    return error == std::errc::invalid_argument || error == std::errc::function_not_supported ||
           error == std::errc::operation_not_supported;
}

}  // namespace

std::error_code renameExclusively(const ItemReference& from, const ItemReference& to) {
    const std::error_code error = outcomeOf([&] {
        return ::renameat2(from.folder, from.name.c_str(), to.folder, to.name.c_str(), RENAME_NOREPLACE);
    });
    if (!isUnsupported(error)) return error;
    const Result<struct stat> status = statusOf(from);
    if (!status) return status.error();
    return S_ISDIR(status->st_mode) ? renameOverReservedFolder(from, to) : renameBySecondName(from, to);
}

std::error_code renameBetweenFolders(const ItemReference& from, const ItemReference& to) {
    const std::error_code error = renameExclusively(from, to);
    if (error != std::errc::permission_denied) return error;
    const Result<struct stat> status = statusOf(from);
    if (!status || !S_ISDIR(status->st_mode) || (status->st_mode & S_IWUSR) != 0) return error;
    const mode_t mode = status->st_mode & 07777u;
    const FileDescriptor item = openItem(from, O_RDONLY | O_DIRECTORY);
    if (!item || uninterrupted([&] { return ::fchmod(item.number(), mode | S_IWUSR); }) != 0) return error;
    const std::error_code again = renameExclusively(from, to);
    // Failing to restore the permissions does not change whether the item was renamed.
    (void)uninterrupted([&] { return ::fchmod(item.number(), mode); });
    (void)flushFile(item.number());
    return again;
}

std::error_code renameToFreeName(const ItemReference& from, const ItemReference& to) {
    constexpr int mostAttempts = 10'000;
    std::error_code error;
    for (int attempt = 1; attempt <= mostAttempts; ++attempt) {
        error = renameBetweenFolders(from, {to.folder, trashName(to.name, attempt, NAME_MAX)});
        if (error != std::errc::file_exists) break;
    }
    return error;
}

}  // namespace vantrel
