#include "dialog/DialogAccessible.h"

#include <gmock/gmock.h>

#include "dialog/DialogFixture.h"

namespace vantrel::test {

namespace {

using testing::ElementsAre;

class DialogAccessibleTest : public DialogFixture {
protected:
    Accessible& dialog() { return *overlay->accessible(); }

    std::vector<std::string> names(AccessibleRole role) {
        std::vector<std::string> found;
        for (std::size_t index = 0; index < dialog().elementCount(); ++index) {
            if (dialog().element(index).role == role) found.push_back(dialog().element(index).name);
        }
        return found;
    }
};

}  // namespace

TEST_F(DialogAccessibleTest, isADialogNamedByItsTitle) {
    open(deletion);
    EXPECT_EQ(dialog().role(), AccessibleRole::dialog);
    EXPECT_EQ(dialog().name(), "DELETE (Move to Trash)");
    EXPECT_EQ(dialog().frame(), overlay->dialogRect());
    open(viewer);
    EXPECT_EQ(dialog().name(), "VIEW: a.txt");
}

TEST_F(DialogAccessibleTest, tellsItsTextsAndItsButtons) {
    open(deletion);
    EXPECT_THAT(names(AccessibleRole::label), ElementsAre("Do you really wish to delete:", "a.txt",
                                                          "(Item will be safely placed in macOS Trash)"));
    EXPECT_THAT(names(AccessibleRole::button), ElementsAre("Delete", "Cancel"));
    open(viewer);
    EXPECT_THAT(names(AccessibleRole::label), ElementsAre("first", "second"));
    open(help);
    EXPECT_EQ(names(AccessibleRole::label).size(), 40U);
    EXPECT_EQ(names(AccessibleRole::label)[2], "ENTER");
    EXPECT_EQ(names(AccessibleRole::label)[3], "Open Folder / Launch File");
}

TEST_F(DialogAccessibleTest, eachElementIsWhereItIsPainted) {
    open(deletion);
    const RecordingCanvas canvas = drawn();
    for (std::size_t index = 2; index < dialog().elementCount(); ++index) {
        const AccessibleElement label = dialog().element(index);
        EXPECT_EQ(canvas.theText(label.name).area, label.frame);
    }
    const Rect confirm = dialog().element(0).frame;
    click({confirm.midX(), confirm.midY()});
    EXPECT_EQ(delegate->confirmed.size(), 1U);
    const Rect cancel = dialog().element(1).frame;
    click({cancel.midX(), cancel.midY()});
    EXPECT_EQ(delegate->cancellations, 1);
}

TEST_F(DialogAccessibleTest, theHighlightedButtonHasTheFocus) {
    open(deletion);
    EXPECT_EQ(dialog().focusedElement(), 0U);
    EXPECT_TRUE(dialog().element(0).isSelected);
    press(Key::tab);
    EXPECT_EQ(dialog().focusedElement(), 1U);
    EXPECT_TRUE(dialog().element(1).isSelected);
    EXPECT_FALSE(dialog().element(0).isSelected);
}

TEST_F(DialogAccessibleTest, aFieldHasTheFocusAndThePromptsNameUntilTabLeavesIt) {
    open(copy);
    EXPECT_EQ(field().accessibleName, "Copy \"a.txt\" to destination:");
    EXPECT_EQ(dialog().focusedElement(), std::nullopt);
    press(Key::tab);
    EXPECT_EQ(dialog().focusedElement(), 1U);
    press(Key::tab);
    EXPECT_EQ(dialog().focusedElement(), std::nullopt);
}

TEST_F(DialogAccessibleTest, pressingAButtonAnswers) {
    open(copy);
    dialog().press(0);
    ASSERT_EQ(delegate->confirmed.size(), 1U);
    EXPECT_EQ(delegate->confirmed[0].second, "/right/a.txt");
    dialog().press(1);
    EXPECT_EQ(delegate->cancellations, 1);
    dialog().press(2);
    EXPECT_EQ(delegate->confirmed.size(), 1U) << "a text is no button";
    EXPECT_TRUE(dialog().element(1).isPressable);
    EXPECT_FALSE(dialog().element(2).isPressable);
}

TEST_F(DialogAccessibleTest, theSortOrdersCanBePressedLikeTheirDigits) {
    open(dialog::Sort{});
    ASSERT_EQ(dialog().elementCount(), 6U);
    EXPECT_EQ(dialog().element(3).name, "2.  Size       (Largest Folders & Files first)");
    EXPECT_EQ(dialog().element(3).role, AccessibleRole::button);
    EXPECT_EQ(dialog().element(3).keyBinding, "2");
    EXPECT_TRUE(dialog().element(3).isPressable);
    dialog().press(3);
    ASSERT_EQ(delegate->confirmed.size(), 1U);
    EXPECT_EQ(delegate->confirmed[0].second, "size");
}

TEST_F(DialogAccessibleTest, itsRevisionGrowsWhenItShowsAnotherDialog) {
    open(deletion);
    const std::uint64_t before = dialog().revision();
    overlay->setDialogType(help);
    EXPECT_GT(dialog().revision(), before);
}

}  // namespace vantrel::test
