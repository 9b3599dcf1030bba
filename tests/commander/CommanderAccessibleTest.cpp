#include "commander/CommanderAccessible.h"

#include "support/CommanderFixture.h"

namespace vantrel::test {

namespace {

class CommanderAccessibleTest : public CommanderTest {
protected:
    Accessible& bars() { return *commander->accessible(); }
};

}  // namespace

TEST_F(CommanderAccessibleTest, tellsThePromptLine) {
    EXPECT_EQ(bars().name(), "Vantrel Commander");
    EXPECT_EQ(bars().element(0).role, AccessibleRole::label);
    EXPECT_EQ(bars().element(0).name, "ann@Mac:/start$ ");
    EXPECT_EQ(bars().element(0).frame, (Rect{0, 672, 1100, 22}));
}

TEST_F(CommanderAccessibleTest, theFunctionKeyCellsAreButtonsWithTheirKeys) {
    ASSERT_EQ(bars().elementCount(), 11U);
    std::vector<std::string> names;
    for (std::size_t index = 1; index < 11; ++index) {
        const AccessibleElement button = bars().element(index);
        EXPECT_EQ(button.role, AccessibleRole::button);
        EXPECT_TRUE(button.isPressable);
        EXPECT_EQ(button.frame, commander->fnButtons()[index - 1].rect);
        names.push_back(button.keyBinding + " " + button.name);
    }
    EXPECT_THAT(names, testing::ElementsAre("F1 Help", "F2 Bytes/HR", "F3 View", "F4 Edit", "F5 Copy",
                                            "F6 RenMov", "F7 Mkdir", "F8 Delete", "F9 Sort", "F10 Quit"));
}

TEST_F(CommanderAccessibleTest, pressingACellRunsItsCommand) {
    bars().press(7);
    ASSERT_NE(commander->dialogOverlay(), nullptr);
    EXPECT_TRUE(std::holds_alternative<dialog::Mkdir>(commander->dialogOverlay()->dialogType()));
    bars().press(10);
    EXPECT_EQ(desktop.application.terminations, 1);
    bars().press(0);
    EXPECT_EQ(desktop.application.terminations, 1) << "the prompt line is no button";
    bars().press(1);
    EXPECT_TRUE(std::holds_alternative<dialog::Help>(commander->dialogOverlay()->dialogType()));
}

TEST_F(CommanderAccessibleTest, thePanelsAreKnownByTheirSide) {
    EXPECT_EQ(left().accessible()->name(), "Left panel: /start");
    EXPECT_EQ(right().accessible()->name(), "Right panel: /Users/ann");
}

TEST_F(CommanderAccessibleTest, theFocusIsTheCursorOfTheActivePanelAndThenTheDialogs) {
    EXPECT_EQ(accessibleFocus(*commander), (AccessiblePlace{&left(), 8}));
    press(Key::tab);
    EXPECT_EQ(accessibleFocus(*commander), (AccessiblePlace{&right(), 8}));
    press(Key::f1);
    EXPECT_EQ(accessibleFocus(*commander), (AccessiblePlace{commander->dialogOverlay().get(), 0}));
    EXPECT_TRUE(isBehindDialog(right()));
    press(Key::escape);
    EXPECT_EQ(accessibleFocus(*commander), (AccessiblePlace{&right(), 8}));
}

}  // namespace vantrel::test
