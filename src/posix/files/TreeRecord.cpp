#include "posix/files/TreeRecord.h"

#include <algorithm>

namespace vantrel {

bool isFresh(const struct stat& status, VolumeKind kind) {
    // The steps of the dates: the system's clock tick on its own file systems, seconds elsewhere, and a
    // server may have a clock of its own.
    const double step = kind == VolumeKind::native ? 0.05 : 3;  // seconds
    std::timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const auto age = [&](const timespec& date) {
        return static_cast<double>(now.tv_sec - date.tv_sec) +
               1e-9 * static_cast<double>(now.tv_nsec - date.tv_nsec);
    };
    return std::min(age(status.st_ctim), age(status.st_mtim)) < step;
}

void TreeRecord::add(std::string name, const struct stat& status, bool isUncertain) {
    if (S_ISDIR(status.st_mode)) open_.push_back(entries_.size());
    const std::size_t end = entries_.size() + 1;
    entries_.push_back({std::move(name), ItemState::of(status), end, isUncertain});
}

void TreeRecord::finishFolder() {
    entries_[open_.back()].end = entries_.size();
    open_.pop_back();
}

std::vector<std::string> TreeRecord::namesBelow(std::size_t index) const {
    std::vector<std::string> names;
    for (std::size_t below = index + 1; below < entries_[index].end; below = entries_[below].end)
        names.push_back(entries_[below].name);
    std::ranges::sort(names);
    return names;
}

}  // namespace vantrel
