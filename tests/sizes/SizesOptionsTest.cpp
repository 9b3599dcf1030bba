#include "sizes/SizesOptions.h"

#include <gtest/gtest.h>

namespace vantrel::sizes {
namespace {

TEST(SizesOptions, takeTheWorkingDirectoryAndTheLargestFirstByThemselves) {
    EXPECT_EQ(parseArguments({}),
              Request(Options{NumberStyle::humanReadable, RowOrder::largestFirst, {"."}}));
}

TEST(SizesOptions, takeFoldersInTheOrderGiven) {
    EXPECT_EQ(parseArguments({"/b", "a\xFF", "-"}),
              Request(Options{NumberStyle::humanReadable, RowOrder::largestFirst, {"/b", "a\xFF", "-"}}));
}

TEST(SizesOptions, mayStandBeforeAndBehindFolders) {
    EXPECT_EQ(parseArguments({"--bytes", "a", "--sort", "name", "b"}),
              Request(Options{NumberStyle::bytes, RowOrder::byName, {"a", "b"}}));
}

TEST(SizesOptions, takeTheOrderInOneWordToo) {
    EXPECT_EQ(parseArguments({"--sort=name", "a"}),
              Request(Options{NumberStyle::humanReadable, RowOrder::byName, {"a"}}));
    EXPECT_EQ(parseArguments({"--sort=name", "--sort=size", "a"}),
              Request(Options{NumberStyle::humanReadable, RowOrder::largestFirst, {"a"}}));
}

TEST(SizesOptions, endAtTwoDashes) {
    EXPECT_EQ(parseArguments({"--", "--bytes", "--"}),
              Request(Options{NumberStyle::humanReadable, RowOrder::largestFirst, {"--bytes", "--"}}));
    EXPECT_EQ(parseArguments({"a", "--"}),
              Request(Options{NumberStyle::humanReadable, RowOrder::largestFirst, {"a"}}));
}

TEST(SizesOptions, askForHelpAndVersion) {
    EXPECT_EQ(parseArguments({"a", "--help"}), Request(HelpRequest{}));
    EXPECT_EQ(parseArguments({"--version"}), Request(VersionRequest{}));
}

TEST(SizesOptions, refuseWhatTheyDoNotKnow) {
    EXPECT_EQ(parseArguments({"--byte"}), Request(UsageError{"unknown option \"--byte\""}));
    EXPECT_EQ(parseArguments({"-b"}), Request(UsageError{"unknown option \"-b\""}));
    EXPECT_EQ(parseArguments({"--sort", "age"}), Request(UsageError{"--sort takes \"size\" or \"name\""}));
    EXPECT_EQ(parseArguments({"--sort="}), Request(UsageError{"--sort takes \"size\" or \"name\""}));
    EXPECT_EQ(parseArguments({"--sorted"}), Request(UsageError{"--sort takes \"size\" or \"name\""}));
    EXPECT_EQ(parseArguments({"--sort"}), Request(UsageError{"--sort needs \"size\" or \"name\""}));
}

}  // namespace
}  // namespace vantrel::sizes
