#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include "dialog/DialogFixture.h"
#include "dialog/OvDialogOverlayView.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Confirmed = std::pair<DialogType, std::optional<std::string>>;

class DialogClicks : public test::DialogFixture {};

TEST_F(DialogClicks, outsideTheBoxCancel) {
    open(copy);  // box (270, 250, 560, 220)
    for (const Point point : {Point{269, 300}, {300, 249}, {830, 300}, {300, 470}, {0, 0}, {1099, 719}}) {
        EXPECT_EQ(click(point), EventResult::handled);
    }
    EXPECT_EQ(delegate->cancellations, 6);
}

TEST_F(DialogClicks, inTheBoxesBlankAreaDoNothing) {
    open(copy);
    for (const Point point : {Point{270, 250}, {829, 469}, {550, 300}, {540, 430}, {300, 430}}) {
        EXPECT_EQ(click(point), EventResult::handled);
    }
    EXPECT_EQ(delegate->cancellations, 0);
    EXPECT_THAT(delegate->confirmed, IsEmpty());
    EXPECT_EQ(overlay->selectedButtonIndex(), 0);
}

TEST_F(DialogClicks, onAButtonHighlightItAndAnswerWithIt) {
    open(copy);  // buttons at x 430 and 550, y 425, 100 by 28
    for (const Point point : {Point{430, 425}, {529, 452}}) click(point);
    EXPECT_THAT(delegate->confirmed,
                ElementsAre(Confirmed{copy, "/right/a.txt"}, Confirmed{copy, "/right/a.txt"}));
    EXPECT_EQ(overlay->selectedButtonIndex(), 0);
    const int redraws = host.redraws;
    for (const Point point : {Point{550, 425}, {649, 452}}) click(point);
    EXPECT_GT(host.redraws, redraws) << "the dialog may stay, with another button highlighted";
    EXPECT_EQ(delegate->cancellations, 2);
    EXPECT_EQ(overlay->selectedButtonIndex(), 1);
    click({430, 425});
    EXPECT_EQ(overlay->selectedButtonIndex(), 0);
    EXPECT_EQ(delegate->confirmed.size(), 3U);
}

TEST_F(DialogClicks, justBesideAButtonDoNothing) {
    open(copy);
    for (const Point point : {Point{429, 430}, {530, 430}, {549, 430}, {650, 430}, {480, 424}, {480, 453}}) {
        click(point);
    }
    EXPECT_THAT(delegate->confirmed, IsEmpty());
    EXPECT_EQ(delegate->cancellations, 0);
}

TEST_F(DialogClicks, onTheOnlyButtonHitItLeftOfTheMiddle) {
    open(help);  // button (490, 560, 100, 28)
    click({489, 570});
    click({590, 570});
    EXPECT_THAT(delegate->confirmed, IsEmpty());
    click({490, 560});
    click({589, 587});
    EXPECT_THAT(delegate->confirmed,
                ElementsAre(Confirmed{help, std::nullopt}, Confirmed{help, std::nullopt}));
}

TEST_F(DialogClicks, areMeasuredInTheOverlaysOwnCoordinates) {
    open(copy);
    overlay->setFrame({100, 50, 1000, 670});  // box at (320, 275) in the window, buttons at y 450
    click({319, 300});
    EXPECT_EQ(delegate->cancellations, 1);
    click({480, 450});
    EXPECT_EQ(delegate->confirmed.size(), 1U);
}

}  // namespace
}  // namespace vantrel
