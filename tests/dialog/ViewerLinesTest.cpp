#include "dialog/ViewerLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantrel {
namespace {

using testing::ElementsAre;

constexpr std::size_t all = 1000;

TEST(ViewerLines, endAtLineFeeds) {
    EXPECT_THAT(viewerLines("a\nb\n\nc", all, all), ElementsAre("a", "b", "", "c"));
    EXPECT_THAT(viewerLines("a\n", all, all), ElementsAre("a", ""));
    EXPECT_THAT(viewerLines("", all, all), ElementsAre(""));
}

TEST(ViewerLines, areNoMoreThanAskedFor) {
    EXPECT_THAT(viewerLines("a\nb\nc", 2, all), ElementsAre("a", "b"));
    EXPECT_THAT(viewerLines("a\nb\nc", 0, all), ElementsAre());
}

TEST(ViewerLines, putTabsToTheNextMultipleOfEightColumns) {
    EXPECT_THAT(viewerLines("\tx", all, all), ElementsAre("        x"));
    EXPECT_THAT(viewerLines("ab\tx\ty", all, all), ElementsAre("ab      x       y"));
    EXPECT_THAT(viewerLines("12345678\tx", all, all), ElementsAre("12345678        x"));
    EXPECT_THAT(viewerLines("\u00E9\u00E9\tx", all, all), ElementsAre("\u00E9\u00E9      x"))
        << "characters count, not bytes";
    EXPECT_THAT(viewerLines("e\u0301e\u0301\tx", all, all), ElementsAre("e\u0301e\u0301      x"))
        << "a combining mark takes no column";
}

TEST(ViewerLines, leaveOutACarriageReturnAtTheEndAndShowOneInside) {
    EXPECT_THAT(viewerLines("dos\r\nfile\r\n", all, all), ElementsAre("dos", "file", ""));
    EXPECT_THAT(viewerLines("a\rb", all, all), ElementsAre("a\uFFFDb"));
}

TEST(ViewerLines, makeControlCharactersHarmless) {
    EXPECT_THAT(viewerLines("\x1B[2J\x01", all, all), ElementsAre("\uFFFD[2J\uFFFD"));
    EXPECT_THAT(viewerLines("\u202Eabc", all, all), ElementsAre("\uFFFD"
                                                                "abc"));
}

TEST(ViewerLines, areCutBetweenCodePoints) {
    EXPECT_THAT(viewerLines("abcdef\nx", all, 3), ElementsAre("abc", "x"));
    EXPECT_THAT(viewerLines("ab\u00E9f", all, 3), ElementsAre("ab"));
    EXPECT_THAT(viewerLines("ab\u00E9f", all, 4), ElementsAre("ab\u00E9"));
}

}  // namespace
}  // namespace vantrel
