#include "platform/Accessible.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "platform/View.h"

namespace vantrel {

namespace {

/// A view with three elements side by side, 10 points wide each, one of which may have the focus.
class MeaningfulView final : public View, public Accessible {
public:
    explicit MeaningfulView(AccessibleRole role) : View(Rect{0, 0, 100, 100}), role_(role) {}

    Accessible* accessible() override { return this; }
    AccessibleRole role() const override { return role_; }
    std::string name() const override { return "name"; }
    Rect frame() const override { return bounds(); }
    std::size_t elementCount() const override { return 3; }
    AccessibleElement element(std::size_t index) const override {
        return {.role = AccessibleRole::label,
                .name = "element",
                .description = "",
                .keyBinding = "",
                .frame = {10.0 * static_cast<double>(index), 0, 10, 10}};
    }
    std::optional<std::size_t> focusedElement() const override { return focused; }
    void press(std::size_t) override {}

    std::optional<std::size_t> focused;

private:
    AccessibleRole role_;
};

std::shared_ptr<MeaningfulView> makeView(AccessibleRole role = AccessibleRole::group) {
    return std::make_shared<MeaningfulView>(role);
}

}  // namespace

TEST(Accessible, anElementIsFoundByItsPlace) {
    const auto view = makeView();
    EXPECT_EQ(view->elementAt({0, 0}), 0U);
    EXPECT_EQ(view->elementAt({29, 9}), 2U);
    EXPECT_EQ(view->elementAt({30, 5}), std::nullopt);
    EXPECT_EQ(view->elementAt({5, 10}), std::nullopt);
}

TEST(Accessible, showsAllOfItsElementsUnlessItSaysOtherwise) {
    EXPECT_THAT(makeView()->shownElements(), testing::ElementsAre(0, 1, 2));
}

TEST(AccessibleFocus, isTheFocusedElementOfWhicheverViewHasOne) {
    const auto root = std::make_shared<View>();
    const auto left = makeView();
    const auto right = makeView();
    root->addSubview(left);
    root->addSubview(right);
    EXPECT_EQ(accessibleFocus(*root), std::nullopt);
    left->focused = 2;
    EXPECT_EQ(accessibleFocus(*root), (AccessiblePlace{left.get(), 2}));
    left->focused.reset();
    right->focused = 1;
    EXPECT_EQ(accessibleFocus(*root), (AccessiblePlace{right.get(), 1}));
}

TEST(AccessibleFocus, isNeverBehindAnOpenDialog) {
    const auto root = makeView();
    const auto panel = makeView();
    const auto dialog = makeView(AccessibleRole::dialog);
    root->addSubview(panel);
    root->addSubview(dialog);
    root->focused = 0;
    panel->focused = 0;
    EXPECT_EQ(accessibleFocus(*root), std::nullopt) << "a native field has it";
    dialog->focused = 1;
    EXPECT_EQ(accessibleFocus(*root), (AccessiblePlace{dialog.get(), 1}));
    dialog->removeFromSuperview();
    EXPECT_EQ(accessibleFocus(*root), (AccessiblePlace{panel.get(), 0}));
}

TEST(IsBehindDialog, holdsForAllButTheDialogAndWhatItContains) {
    const auto root = makeView();
    const auto panel = makeView();
    const auto dialog = makeView(AccessibleRole::dialog);
    const auto inDialog = makeView();
    root->addSubview(panel);
    EXPECT_FALSE(isBehindDialog(*root));
    EXPECT_FALSE(isBehindDialog(*panel));
    root->addSubview(dialog);
    dialog->addSubview(inDialog);
    EXPECT_TRUE(isBehindDialog(*root));
    EXPECT_TRUE(isBehindDialog(*panel));
    EXPECT_FALSE(isBehindDialog(*dialog));
    EXPECT_FALSE(isBehindDialog(*inDialog));
}

}  // namespace vantrel
