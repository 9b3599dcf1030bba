#include "snapshot/SnapshotOptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantrel::test {

namespace {

std::optional<SnapshotOptions> parse(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "vantrel-snapshot");
    return parseSnapshotOptions(arguments);
}

}  // namespace

TEST(SnapshotOptions, aFileIsEnoughAndTheRestHasDefaults) {
    const auto options = parse({"-o", "a.png"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->file, "a.png");
    EXPECT_TRUE(options->folders.empty());
    EXPECT_EQ(options->width, 1100);
    EXPECT_EQ(options->height, 720);
    EXPECT_EQ(options->scale, 1);
}

TEST(SnapshotOptions, everyOptionMayStandAnywhere) {
    const auto options = parse({"/usr", "--size", "800x500", "--scale", "1.5", "/caf\xE9", "-o", "a.png",
                                "--press", "Tab", "--press", "F1"});
    ASSERT_TRUE(options);
    EXPECT_THAT(options->folders, testing::ElementsAre("/usr", "/caf\xE9"));
    EXPECT_EQ(options->width, 800);
    EXPECT_EQ(options->height, 500);
    EXPECT_EQ(options->scale, 1.5);
    EXPECT_THAT(options->keys, testing::ElementsAre("Tab", "F1"));
}

TEST(SnapshotOptions, whatMakesNoSenseIsRefused) {
    EXPECT_FALSE(parse({}));
    EXPECT_FALSE(parse({"-o"}));
    EXPECT_FALSE(parse({"-o", ""}));
    EXPECT_FALSE(parse({"-o", "a.png", "one", "two", "three"}));
    EXPECT_FALSE(parse({"-o", "a.png", "--zoom", "2"}));
    EXPECT_FALSE(parse({"-o", "a.png", "--size", "800"}));
    EXPECT_FALSE(parse({"-o", "a.png", "--size", "800x"}));
    EXPECT_FALSE(parse({"-o", "a.png", "--size", "0x500"}));
    EXPECT_FALSE(parse({"-o", "a.png", "--size", "99999x500"}));
    EXPECT_FALSE(parse({"-o", "a.png", "--scale", "0"}));
    EXPECT_FALSE(parse({"-o", "a.png", "--scale", "big"}));
}

}  // namespace vantrel::test
