#include "platform/posix/ExclusiveRename.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "platform/posix/ItemPlace.h"

namespace vantrel {

namespace {

struct Renaming {
    const SystemCalls& calls;
    int fromFolder;
    const char* fromName;
    int toFolder;
    const char* toName;

    std::error_code rename() const {
        return calls("renameat", [&] { return ::renameat(fromFolder, fromName, toFolder, toName); }) == 0
                   ? std::error_code()
                   : lastError();
    }

    /// A folder may replace an empty folder only, so one made for the purpose reserves the name.
    std::error_code overReservedFolder() const {
        if (calls("mkdirat", [&] { return ::mkdirat(toFolder, toName, 0700); }) != 0) return lastError();
        const std::error_code error = rename();
        if (error) calls("unlinkat", [&] { return ::unlinkat(toFolder, toName, AT_REMOVEDIR); });
        return error;
    }

    /// Unlike rename(2), link(2) refuses a name that is taken.
    std::error_code bySecondName() const {
        if (calls("linkat", [&] { return ::linkat(fromFolder, fromName, toFolder, toName, 0); }) != 0) {
            return lastError();
        }
        if (calls("unlinkat", [&] { return ::unlinkat(fromFolder, fromName, 0); }) == 0) return {};
        const std::error_code error = lastError();
        calls("unlinkat", [&] { return ::unlinkat(toFolder, toName, 0); });
        return error;
    }
};

/// Whether a rename without replacing is something that the file system or the kernel does not know.
bool isUnsupported(const std::error_code& error) {
    return error == std::errc::invalid_argument || error == std::errc::function_not_supported ||
           error == std::errc::operation_not_supported;
}

}  // namespace

std::error_code renameExclusively(const SystemCalls& calls, int fromFolder, const std::string& fromName,
                                  int toFolder, const std::string& toName) {
    const char* const from = fromName.c_str();
    const char* const to = toName.c_str();
    if (calls("renameat2", [&] { return ::renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE); }) ==
        0) {
        return {};
    }
    const std::error_code error = lastError();
    if (!isUnsupported(error)) return error;
    const Result<struct stat> status = statusOf(calls, fromFolder, fromName);
    if (!status) return status.error();
    const Renaming renaming{calls, fromFolder, from, toFolder, to};
    return S_ISDIR(status.value().st_mode) ? renaming.overReservedFolder() : renaming.bySecondName();
}

}  // namespace vantrel
