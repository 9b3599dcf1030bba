#include <QLineEdit>

#include "qt/accessibility/QtAccessibilityFixture.h"

// What assistive technology hears after a redraw.

namespace vantrel::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class QtAccessibilityEventsTest : public QtAccessibilityFixture {};

}  // namespace

TEST_F(QtAccessibilityEventsTest, whileNobodyListensNothingIsToldAndNoViewIsAsked) {
    ASSERT_FALSE(QAccessible::isActive());
    told.clear();
    root->reached = 0;
    table->reached = 0;
    const auto dialog = openDialog();
    widget.repaint();
    EXPECT_THAT(told, ElementsAre());
    EXPECT_EQ(root->reached, 0);
    EXPECT_EQ(table->reached, 0);

    EXPECT_THAT(announced(), ElementsAre("show COPY", "dialog COPY"))
        << "there would have been something to tell";
    EXPECT_GT(table->reached, 0);
}

TEST_F(QtAccessibilityEventsTest, aMoveOfTheCursorIsToldOnce) {
    EXPECT_THAT(announced(), ElementsAre("focus cell 4", "selected cell 4"));
    EXPECT_THAT(announced(), ElementsAre());
    table->cursor = 6;
    EXPECT_THAT(announced(), ElementsAre("focus cell 6", "selected cell 6"));
}

TEST_F(QtAccessibilityEventsTest, theFocusIsToldAgainWhenTheContentGetsTheKeyboardBack) {
    announced();
    widget.clearFocus();
    widget.setFocus();
    EXPECT_THAT(announced(), ElementsAre("focus cell 4", "selected cell 4"));
}

TEST_F(QtAccessibilityEventsTest, aCursorThatMovesWhileSomethingElseHasTheKeyboardIsNotTold) {
    announced();
    widget.clearFocus();
    table->cursor = 6;
    EXPECT_THAT(announced(), ElementsAre()) << "nothing has the keyboard";
    QLineEdit elsewhere;
    elsewhere.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
    elsewhere.setFocus();
    table->cursor = 8;
    EXPECT_THAT(announced(), ElementsAre()) << "another window has it";
    EXPECT_FALSE(tableOf(tableInterface()).cellAt(3, 0)->state().focused);
}

TEST_F(QtAccessibilityEventsTest, aNewOrderIsToldOfATableThatSomebodyKnowsAndWhatIsOutOfSightForgotten) {
    QAccessibleInterface* const unseen = tableOf(tableInterface()).cellAt(500, 0);
    const QAccessible::Id id = QAccessible::uniqueId(unseen);
    announced();
    EXPECT_NE(QAccessible::accessibleInterface(id), nullptr);
    table->order = 1;
    EXPECT_THAT(announced(), ElementsAre("order Left"));
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

TEST_F(QtAccessibilityEventsTest, anotherNameUnderTheCursorIsToldToo) {
    announced();
    table->prefix = "other ";
    table->order = 1;
    EXPECT_THAT(announced(), ElementsAre("name other 4", "focus other 4", "selected other 4"));
}

TEST_F(QtAccessibilityEventsTest, onlyNamesThatSomebodyKnowsAreToldWhenTheyChange) {
    tableOf(tableInterface()).cellAt(0, 1);
    tableOf(tableInterface()).cellAt(500, 1);
    announced();
    table->prefix = "other ";
    EXPECT_THAT(announced(), testing::IsSupersetOf({"name other 3"}));
    EXPECT_THAT(told, Not(Contains("name other 1003"))) << "nobody sees it";
}

TEST_F(QtAccessibilityEventsTest, aDialogIsToldAndThenItsFocusAndAfterwardsThePanelsAgain) {
    announced();
    auto dialog = openDialog();
    dialog->cursor = 1;
    EXPECT_THAT(announced(), ElementsAre("show COPY", "dialog COPY", "focus Cancel"));
    dialog->removeFromSuperview();
    dialog.reset();
    EXPECT_THAT(announced(), ElementsAre("focus cell 4", "selected cell 4"));
}

TEST_F(QtAccessibilityEventsTest, theFocusIsToldAsItMovesBetweenAFieldAndTheButtons) {
    const auto dialog = openDialog();
    const auto field = openField();
    announced();
    dialog->cursor = 1;
    EXPECT_THAT(announced(), ElementsAre("focus Cancel")) << "Tab highlights a button";
    dialog->cursor.reset();
    EXPECT_THAT(announced(), ElementsAre("focus Copy to:"));
}

}  // namespace vantrel::test
