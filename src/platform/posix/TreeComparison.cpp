#include "platform/posix/Trees.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <optional>
#include <vector>

#include "platform/posix/FolderStack.h"
#include "platform/posix/ItemPlace.h"

namespace vantrel {

namespace {

/// Some file systems keep dates in steps of two seconds.
constexpr time_t coarsestDate = 2;  // seconds

std::error_code difference() {
    return std::make_error_code(std::errc::device_or_resource_busy);
}

class TreeComparison {
public:
    TreeComparison(const SystemCalls& calls, int folder, int otherFolder)
        : calls_(calls), original_(calls, folder), copy_(calls, otherFolder) {}

    std::error_code run(const std::string& name, const std::string& otherName) {
        if (const std::error_code error = compare(name, otherName)) return error;
        while (!remaining_.empty()) {
            const std::error_code error = remaining_.back().empty() ? leave() : compareNext();
            if (error) return error;
        }
        return {};
    }

private:
    std::error_code compareNext() {
        const std::string name = std::move(remaining_.back().back());
        remaining_.back().pop_back();
        return compare(name, name);
    }

    std::error_code compare(const std::string& name, const std::string& otherName) {
        const Result<struct stat> status = statusOf(calls_, original_.current(), name);
        if (!status) return status.error();
        const Result<struct stat> other = statusOf(calls_, copy_.current(), otherName);
        if (!other) return other.error();
        if ((status.value().st_mode & S_IFMT) != (other.value().st_mode & S_IFMT)) return difference();
        if (S_ISREG(status.value().st_mode)) return compareFiles(status.value(), other.value());
        if (S_ISLNK(status.value().st_mode)) return compareLinks(name, otherName);
        return S_ISDIR(status.value().st_mode) ? enter(name, otherName) : std::error_code();
    }

    static std::error_code compareFiles(const struct stat& status, const struct stat& other) {
        const bool isSame = status.st_size == other.st_size &&
                            std::abs(status.st_mtim.tv_sec - other.st_mtim.tv_sec) <= coarsestDate;
        return isSame ? std::error_code() : difference();
    }

    std::error_code compareLinks(const std::string& name, const std::string& otherName) const {
        const std::optional<std::string> target = targetOf(original_.current(), name);
        if (!target) return lastError();
        const std::optional<std::string> other = targetOf(copy_.current(), otherName);
        if (!other) return lastError();
        return target == other ? std::error_code() : difference();
    }

    std::optional<std::string> targetOf(int folder, const std::string& name) const {
        std::string target(PATH_MAX, '\0');
        const ssize_t size = calls_(
            "readlinkat", [&] { return ::readlinkat(folder, name.c_str(), target.data(), target.size()); });
        if (size < 0) return std::nullopt;
        target.resize(static_cast<std::size_t>(size));
        return target;
    }

    std::error_code enter(const std::string& name, const std::string& otherName) {
        if (const std::error_code error = original_.enter(name)) return error;
        if (const std::error_code error = copy_.enter(otherName)) return error;
        Result<std::vector<std::string>> names = namesIn(calls_, original_.current());
        if (!names) return names.error();
        Result<std::vector<std::string>> otherNames = namesIn(calls_, copy_.current());
        if (!otherNames) return otherNames.error();
        std::ranges::sort(names.value());
        std::ranges::sort(otherNames.value());
        if (names.value() != otherNames.value()) return difference();
        remaining_.push_back(std::move(names.value()));
        return {};
    }

    std::error_code leave() {
        remaining_.pop_back();
        if (const std::error_code error = original_.leave()) return error;
        return copy_.leave();
    }

    const SystemCalls& calls_;
    FolderStack original_;
    FolderStack copy_;
    /// Names still to be compared, of each folder on the way down.
    std::vector<std::vector<std::string>> remaining_;
};

}  // namespace

std::error_code compareTrees(const SystemCalls& calls, int folder, const std::string& name, int otherFolder,
                             const std::string& otherName) {
    return TreeComparison(calls, folder, otherFolder).run(name, otherName);
}

}  // namespace vantrel
