#include "posix/files/TrashCan.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <ctime>
#include <string_view>
#include <utility>

#include "base/Paths.h"
#include "base/SystemCall.h"
#include "posix/files/ExclusiveRename.h"
#include "posix/files/WrittenFiles.h"
#include "text/Text.h"

namespace vantrel {

namespace {

constexpr std::string_view infoSuffix = ".trashinfo";
constexpr int mostAttempts = 100'000;

std::string now() {
    const std::time_t moment = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&moment, &local);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return text.data();
}

std::string_view shortened(std::string_view name, std::size_t limit) {
    if (name.size() <= limit) return name;
    // At most three bytes follow the first one of a character; more are not UTF-8.
    for (int steps = 0; steps < 3 && limit > 0 && text::continuesCodePoint(name[limit]); ++steps) --limit;
    return name.substr(0, limit);
}

[[nodiscard]] std::error_code writeNewFile(const ItemReference& place, const std::string& content) {
    FileDescriptor file = openItem(place, O_WRONLY | O_CREAT | O_EXCL);
    if (!file) return lastError();
    std::error_code error;
    for (std::string_view rest = content; !rest.empty() && !error;) {
        const ssize_t count = uninterrupted([&] { return ::write(file.number(), rest.data(), rest.size()); });
        if (count < 0) error = lastError();
        if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
    }
    if (!error) error = flushFile(file.number());
    if (::close(file.release()) != 0 && !error) error = lastError();
    if (!error) error = flushFile(place.folder);
    if (error) (void)unlinkItem(place);  // the first failure is the one to report
    return error;
}

}  // namespace

Result<FileDescriptor> openOwnFolder(const ItemReference& place, int flags) {
    const auto make = [&] { return ::mkdirat(place.folder, place.name.c_str(), 0700); };
    const bool isNew = uninterrupted(make) == 0;
    if (!isNew && errno != EEXIST) return lastError();
    if (const std::error_code error = isNew ? flushFolder(place.folder) : std::error_code()) return error;
    FileDescriptor opened = openItem(place, flags);
    struct stat status {};
    if (!opened || uninterrupted([&] { return ::fstat(opened.number(), &status); }) != 0) return lastError();
    if (status.st_uid != ::geteuid()) return std::make_error_code(std::errc::permission_denied);
    return opened;
}

std::string trashName(const std::string& name, int attempt, std::size_t limit) {
    const std::string number = attempt == 1 ? "" : "." + std::to_string(attempt);
    const std::string extension = paths::extension(name);
    std::string end = extension.empty() ? number : number + "." + extension;
    std::string_view stem = std::string_view(name).substr(0, name.size() - (end.size() - number.size()));
    if (end.size() >= limit) {
        end = number;
        stem = name;
    }
    return std::string(shortened(stem, limit - end.size())) + end;
}

Result<TrashCan> TrashCan::open(FileDescriptor folder, std::string topFolder) {
    TrashCan can(std::move(folder), std::move(topFolder));
    Result<FileDescriptor> files = openOwnFolder({can.folder_.number(), "files"}, O_RDONLY | O_DIRECTORY);
    if (!files) return files.error();
    Result<FileDescriptor> info = openOwnFolder({can.folder_.number(), "info"}, O_RDONLY | O_DIRECTORY);
    if (!info) return info.error();
    can.files_ = std::move(*files);
    can.info_ = std::move(*info);
    return can;
}

bool TrashCan::holds(int folder) const {
    struct stat status {};
    if (::fstat(folder, &status) != 0) return false;
    return std::ranges::any_of(std::array{&folder_, &files_, &info_}, [&](const FileDescriptor* own) {
        struct stat ownStatus {};
        return ::fstat(own->number(), &ownStatus) == 0 && isSameFile(status, ownStatus);
    });
}

std::string TrashCan::infoFor(const std::string& path) const {
    std::string_view recorded = path;
    if (!topFolder_.empty()) recorded.remove_prefix(topFolder_ == "/" ? 1 : topFolder_.size() + 1);
    return "[Trash Info]\nPath=" + paths::percentEncoded(recorded) + "\nDeletionDate=" + now() + "\n";
}

/// Gives the item its name in the can and waits until that is on the disk.
std::error_code TrashCan::rename(const ItemReference& item, const std::string& name) const {
    const ItemReference trashed{files_.number(), name};
    std::error_code error = renameExclusively(item, trashed);
    if (error) return error;
    error = flushFile(trashed.folder);
    if (!error) error = flushFolder(item.folder);
    if (!error) return {};
    const std::error_code stays = renameExclusively(trashed, item);
    return stays ? std::error_code() : error;
}

std::error_code TrashCan::put(const ItemReference& item, const std::string& path) const {
    if (holds(item.folder)) return std::make_error_code(std::errc::invalid_argument);
    const long longest = ::fpathconf(info_.number(), _PC_NAME_MAX);
    const std::size_t limit = static_cast<std::size_t>(longest > 0 ? longest : NAME_MAX) - infoSuffix.size();
    const std::string info = infoFor(path);
    for (int attempt = 1; attempt <= mostAttempts; ++attempt) {
        const std::string name = trashName(item.name, attempt, limit);
        const ItemReference infoFile{info_.number(), name + std::string(infoSuffix)};
        std::error_code error = writeNewFile(infoFile, info);
        if (error == std::errc::file_exists) continue;
        if (error) return error;
        error = rename(item, name);
        if (!error) return {};
        (void)unlinkItem(infoFile);  // an info without an item is harmless
        // A file that somebody left there without its info keeps its name.
        if (error != std::errc::file_exists) return error;
    }
    return std::make_error_code(std::errc::file_exists);
}

}  // namespace vantrel
