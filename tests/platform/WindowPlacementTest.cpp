#include "platform/WindowPlacement.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

constexpr Size wanted{1100, 720};
constexpr Size smallest{800, 500};
constexpr Surroundings around{1, 44, 1, 5};  // a frame, and 24 for the menus above

struct Case {
    const char* screen;
    Rect available;
    Rect content;
};

TEST(WindowPlacement, hasItsSizeWhereThatFitsAndElseShrinksIntoWhatIsFree) {
    // Centred: the whole is 1102 by 769 points.
    for (const Case& c : {
             Case{"large", {0, 0, 1920, 1080}, {410, 199, 1100, 720}},
             Case{"just fitting", {0, 0, 1102, 769}, {1, 44, 1100, 720}},
             Case{"one point too low", {0, 0, 1102, 768}, {1, 44, 1100, 719}},
             Case{"1366x768", {0, 0, 1366, 768}, {133, 44, 1100, 719}},
             Case{"1280x720", {0, 0, 1280, 720}, {90, 44, 1100, 671}},
             Case{"1024x600", {0, 0, 1024, 600}, {1, 44, 1022, 551}},
             Case{"1280x800 at 1.5, in points", {0, 0, 853, 533}, {1, 44, 851, 500}},
             Case{"a panel at the left and one at the top", {60, 30, 1220, 770}, {120, 74, 1100, 720}},
             Case{"the second screen", {-1920, 0, 1920, 1080}, {-1510, 199, 1100, 720}},
         }) {
        EXPECT_EQ(placeContent(c.available, wanted, smallest, around), c.content) << c.screen;
    }
}

TEST(WindowPlacement, whereNotEvenTheSmallestFitsTitleAndMenusAreInSight) {
    EXPECT_EQ(placeContent({0, 0, 640, 400}, wanted, smallest, around), (Rect{1, 44, 800, 500}));
    EXPECT_EQ(placeContent({30, 20, 512, 300}, wanted, smallest, around), (Rect{31, 64, 800, 500}));
}

TEST(WindowPlacement, isInWholePoints) {
    EXPECT_EQ(placeContent({0, 0, 1365.3, 767.5}, wanted, smallest, around), (Rect{132, 44, 1100, 718}));
}

TEST(WindowPlacement, withoutAFrameItTakesWhatThatWouldHaveTaken) {
    EXPECT_EQ(placeContent({0, 0, 1100, 744}, wanted, smallest, {0, 24, 0, 0}), (Rect{0, 24, 1100, 720}));
}

}  // namespace
}  // namespace vantrel
