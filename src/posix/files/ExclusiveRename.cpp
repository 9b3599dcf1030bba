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

struct Renaming {
    int fromFolder;
    const char* fromName;
    int toFolder;
    const char* toName;

    std::error_code rename() const {
        return uninterrupted([&] { return ::renameat(fromFolder, fromName, toFolder, toName); }) == 0
                   ? std::error_code()
                   : lastError();
    }

    /// A folder may replace an empty folder only, so one made for the purpose reserves the name.
    std::error_code overReservedFolder() const {
        if (uninterrupted([&] { return ::mkdirat(toFolder, toName, 0700); }) != 0) return lastError();
        const std::error_code error = rename();
        if (error) uninterrupted([&] { return ::unlinkat(toFolder, toName, AT_REMOVEDIR); });
        return error;
    }

    /// Unlike rename(2), link(2) refuses a name that is taken.
    std::error_code bySecondName() const {
        if (uninterrupted([&] { return ::linkat(fromFolder, fromName, toFolder, toName, 0); }) != 0) {
            return lastError();
        }
        if (uninterrupted([&] { return ::unlinkat(fromFolder, fromName, 0); }) == 0) return {};
        const std::error_code error = lastError();
        uninterrupted([&] { return ::unlinkat(toFolder, toName, 0); });
        return error;
    }
};

/// Whether a rename without replacing is something that the file system or the kernel does not know.
bool isUnsupported(const std::error_code& error) {
    return error == std::errc::invalid_argument || error == std::errc::function_not_supported ||
           error == std::errc::operation_not_supported;
}

}  // namespace

std::error_code renameExclusively(int fromFolder, const std::string& fromName, int toFolder,
                                  const std::string& toName) {
    const char* const from = fromName.c_str();
    const char* const to = toName.c_str();
    if (uninterrupted([&] { return ::renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE); }) == 0) {
        return {};
    }
    const std::error_code error = lastError();
    if (!isUnsupported(error)) return error;
    const Result<struct stat> status = statusOf(fromFolder, fromName);
    if (!status) return status.error();
    const Renaming renaming{fromFolder, from, toFolder, to};
    return S_ISDIR(status.value().st_mode) ? renaming.overReservedFolder() : renaming.bySecondName();
}

std::error_code renameBetweenFolders(int fromFolder, const std::string& fromName, int toFolder,
                                     const std::string& toName) {
    const std::error_code error = renameExclusively(fromFolder, fromName, toFolder, toName);
    if (error != std::errc::permission_denied) return error;
    const Result<struct stat> status = statusOf(fromFolder, fromName);
    if (!status || !S_ISDIR(status.value().st_mode) || (status.value().st_mode & S_IWUSR) != 0) return error;
    const mode_t mode = status.value().st_mode & 07777u;
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const FileDescriptor item(
        uninterrupted([&] { return ::openat(fromFolder, fromName.c_str(), flags, 0); }));
    if (!item || uninterrupted([&] { return ::fchmod(item.number(), mode | S_IWUSR); }) != 0) return error;
    const std::error_code again = renameExclusively(fromFolder, fromName, toFolder, toName);
    uninterrupted([&] { return ::fchmod(item.number(), mode); });
    flushFile(item.number());
    return again;
}

Result<std::string> renameToFreeName(int fromFolder, const std::string& fromName, int toFolder,
                                     const std::string& toName) {
    constexpr int mostAttempts = 10'000;
    std::error_code error;
    for (int attempt = 1; attempt <= mostAttempts; ++attempt) {
        const std::string name = trashName(toName, attempt, NAME_MAX);
        error = renameBetweenFolders(fromFolder, fromName, toFolder, name);
        if (!error) return name;
        if (error != std::errc::file_exists) break;
    }
    return error;
}

}  // namespace vantrel
