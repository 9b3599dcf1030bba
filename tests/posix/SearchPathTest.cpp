#include "posix/SearchPath.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "support/ScopedEnvironment.h"

namespace vantrel {
namespace {

using test::ScopedEnvironment;

std::optional<std::string> variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::optional<std::string> pathFrom(const std::optional<std::string>& value) {
    const ScopedEnvironment path("PATH", value);
    keepOnlyAbsoluteSearchPaths();
    return variable("PATH");
}

TEST(SearchPath, hasAbsoluteEntriesOnly) {
    EXPECT_EQ(pathFrom("/a:/b/c"), "/a:/b/c");
    EXPECT_EQ(pathFrom(".:/a:bin:/b::../x:./y:~/z:"), "/a:/b");
    EXPECT_EQ(pathFrom(":/a"), "/a");
}

TEST(SearchPath, isTheUsualOneWhereNothingIsLeft) {
    for (const std::optional<std::string>& value : {std::optional<std::string>(), {""}, {"."}, {"bin:"}})
        EXPECT_EQ(pathFrom(value), "/usr/local/bin:/usr/bin:/bin");
}

TEST(SearchPath, ofApplicationsAndSettingsIsTheirDefaultWhereNothingIsLeft) {
    const ScopedEnvironment path("PATH", "/a");
    const ScopedEnvironment data("XDG_DATA_DIRS", "share:/usr/share:.");
    const ScopedEnvironment config("XDG_CONFIG_DIRS", "etc");
    keepOnlyAbsoluteSearchPaths();
    EXPECT_EQ(variable("XDG_DATA_DIRS"), "/usr/share");
    EXPECT_EQ(variable("XDG_CONFIG_DIRS"), std::nullopt);
}

}  // namespace
}  // namespace vantrel
