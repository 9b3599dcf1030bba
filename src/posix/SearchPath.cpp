#include "posix/SearchPath.h"

#include <cstdlib>
#include <string>
#include <string_view>

namespace vantrel {

namespace {

/// Used when no entry is left: what libraries would use instead includes the working directory.
constexpr const char* usualPath = "/usr/local/bin:/usr/bin:/bin";

std::string absoluteEntriesOf(std::string_view list) {
    std::string kept;
    while (!list.empty()) {
        const std::string_view entry = list.substr(0, list.find(':'));
        list.remove_prefix(entry.size() == list.size() ? entry.size() : entry.size() + 1);
        if (!entry.starts_with('/')) continue;
        if (!kept.empty()) kept += ':';
        kept += entry;
    }
    return kept;
}

void keepAbsoluteEntries(const char* variable, const char* otherwise) {
    const char* const value = std::getenv(variable);
    const std::string kept = absoluteEntriesOf(value == nullptr ? "" : value);
    if (!kept.empty()) {
        ::setenv(variable, kept.c_str(), 1);
    } else if (otherwise != nullptr) {
        ::setenv(variable, otherwise, 1);
    } else {
        ::unsetenv(variable);
    }
}

}  // namespace

void keepOnlyAbsoluteSearchPaths() {
    keepAbsoluteEntries("PATH", usualPath);
    for (const char* const variable : {"XDG_DATA_DIRS", "XDG_CONFIG_DIRS"})
        keepAbsoluteEntries(variable, nullptr);
}

}  // namespace vantrel
