#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QLineEdit>
#include <QTest>

#include "platform/qt/QtContentWidget.h"
#include "platform/qt/QtTextField.h"
#include "qt/QtTestSupport.h"

namespace vantrel::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

/// A view with a meaning that a test sets, and counts of what was asked of it.
class MeaningfulView final : public View, public Accessible {
public:
    MeaningfulView(AccessibleRole role, std::string name) : role_(role), name_(std::move(name)) {}

    Accessible* accessible() override {
        ++reached;
        return this;
    }
    AccessibleRole role() const override { return role_; }
    std::string name() const override { return name_; }
    Rect frame() const override { return bounds(); }
    std::size_t elementCount() const override { return columns * (rows + 1) + buttons.size(); }
    AccessibleElement element(std::size_t index) const override {
        ++asked;
        if (columns == 0) {
            return {.role = AccessibleRole::button,
                    .name = buttons[index],
                    .description = "what it does",
                    .keyBinding = "F7",
                    .frame = {0, 20.0 * static_cast<double>(index), 50, 20},
                    .isPressable = true};
        }
        const bool isTitle = index < columns;
        const std::size_t row = index / columns;
        return {.role = isTitle ? AccessibleRole::columnHeader : AccessibleRole::cell,
                .name = (isTitle ? "title " : prefix) + std::to_string(index),
                .description = "",
                .keyBinding = "",
                .frame = row <= 2 ? Rect{0, 10.0 * static_cast<double>(row), 10, 10} : Rect{},
                .isPressable = true,
                .isSelectable = !isTitle,
                .isSelected = index == cursor};
    }
    std::vector<std::size_t> shownElements() const override {
        std::vector<std::size_t> shown;
        for (std::size_t index = 0; index < std::min<std::size_t>(elementCount(), 3 * columns); ++index)
            shown.push_back(index);
        return shown;
    }
    std::size_t columnCount() const override { return columns; }
    std::optional<std::size_t> selectedElement() const override { return cursor; }
    std::optional<std::size_t> focusedElement() const override { return cursor; }
    void press(std::size_t index) override {
        pressed.push_back(index);
        if (onPress) onPress();
    }
    void select(std::size_t index) override { cursor = index; }
    std::uint64_t revision() const override { return order; }

    std::size_t columns = 0;
    std::size_t rows = 0;
    std::vector<std::string> buttons;
    std::string prefix = "cell ";
    std::optional<std::size_t> cursor;
    std::uint64_t order = 0;
    std::vector<std::size_t> pressed;
    std::function<void()> onPress;
    int reached = 0;
    mutable int asked = 0;

private:
    AccessibleRole role_;
    std::string name_;
};

std::vector<std::string> told;

void keep(QAccessibleEvent* event) {
    QAccessibleInterface* const about = event->accessibleInterface();
    const std::string name = about == nullptr ? "nobody" : about->text(QAccessible::Name).toStdString();
    const auto add = [&](const char* what) { told.push_back(what + name); };
    if (event->type() == QAccessible::Focus) add("focus ");
    if (event->type() == QAccessible::SelectionAdd) add("selected ");
    if (event->type() == QAccessible::NameChanged) add("name ");
    if (event->type() == QAccessible::DialogStart) add("dialog ");
}

/// A content with two buttons of its own and a table of a hundred thousand rows.
class QtAccessibilityTest : public testing::Test {
protected:
    QtAccessibilityTest() {
        root->buttons = {"Help", "Quit"};
        table->columns = 2;
        table->rows = 100'000;
        table->cursor = 4;
        table->setFrame({100, 50, 150, 100});
        root->addSubview(table);
        widget.setRoot(root);
        widget.resize(300, 200);
        widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&widget));
        widget.setFocus();
        widget.accessibleTree().setListener(keep);
    }

    QAccessibleInterface& content() { return *QAccessible::queryAccessibleInterface(&widget); }
    QAccessibleInterface& tableInterface() { return *content().child(2); }
    QAccessibleTableInterface& tableOf(QAccessibleInterface& view) { return *view.tableInterface(); }
    static std::string nameOf(QAccessibleInterface* about) {
        return about->text(QAccessible::Name).toStdString();
    }

    /// What a redraw tells.
    std::vector<std::string> announced() {
        told.clear();
        widget.accessibleTree().announceChanges();
        return told;
    }

    std::shared_ptr<MeaningfulView> openDialog() {
        auto dialog = std::make_shared<MeaningfulView>(AccessibleRole::dialog, "COPY");
        dialog->buttons = {"Copy", "Cancel"};
        dialog->setFrame({0, 0, 300, 200});
        root->addSubview(dialog);
        return dialog;
    }

    std::shared_ptr<MeaningfulView> root =
        std::make_shared<MeaningfulView>(AccessibleRole::group, "Commander");
    std::shared_ptr<MeaningfulView> table = std::make_shared<MeaningfulView>(AccessibleRole::table, "Left");
    QtContentWidget widget{Color{0, 0, 0.67}};
};

}  // namespace

TEST_F(QtAccessibilityTest, theContentStandsForItsRootView) {
    EXPECT_EQ(nameOf(&content()), "Commander");
    ASSERT_EQ(content().childCount(), 3);
    EXPECT_EQ(content().child(0)->role(), QAccessible::Button);
    EXPECT_EQ(nameOf(content().child(1)), "Quit");
    EXPECT_EQ(content().child(2)->role(), QAccessible::Table);
    EXPECT_EQ(content().child(3), nullptr);
    EXPECT_EQ(content().child(-1), nullptr);
    for (int index = 0; index < 3; ++index) {
        QAccessibleInterface* const child = content().child(index);
        EXPECT_EQ(content().indexOfChild(child), index);
        EXPECT_EQ(child->parent(), &content());
        EXPECT_EQ(content().child(index), child) << "the same each time";
    }
}

TEST_F(QtAccessibilityTest, aTableTellsItsRowsColumnsAndTitles) {
    EXPECT_EQ(nameOf(&tableInterface()), "Left");
    QAccessibleTableInterface& cells = tableOf(tableInterface());
    EXPECT_EQ(cells.rowCount(), 100'000);
    EXPECT_EQ(cells.columnCount(), 2);
    EXPECT_EQ(cells.columnDescription(1), "title 1");
    QAccessibleInterface* const last = cells.cellAt(99'999, 1);
    EXPECT_EQ(nameOf(last), "cell 200001");
    EXPECT_EQ(last->tableCellInterface()->rowIndex(), 99'999);
    EXPECT_EQ(last->tableCellInterface()->columnIndex(), 1);
    EXPECT_EQ(nameOf(last->tableCellInterface()->columnHeaderCells().at(0)), "title 1");
    EXPECT_EQ(last->tableCellInterface()->table(), &tableInterface());
    EXPECT_TRUE(last->state().offscreen);
    EXPECT_EQ(cells.cellAt(100'000, 0), nullptr);
    EXPECT_EQ(cells.cellAt(0, 2), nullptr);
}

TEST_F(QtAccessibilityTest, rowsThatNobodyAsksForCostNothing) {
    table->asked = 0;
    EXPECT_EQ(tableInterface().childCount(), 200'002);
    EXPECT_EQ(tableOf(tableInterface()).rowCount(), 100'000);
    EXPECT_EQ(table->asked, 0);
    announced();
    table->asked = 0;
    announced();
    EXPECT_LT(table->asked, 10) << "the focus, and the few that are known and on show";
}

TEST_F(QtAccessibilityTest, givesBackWhatItMadeWhenVeryMuchWasAskedFor) {
    QAccessibleInterface* const early = tableOf(tableInterface()).cellAt(10, 0);
    const QAccessible::Id id = QAccessible::uniqueId(early);
    for (int row = 0; row < 20'000; ++row) tableOf(tableInterface()).cellAt(row, 0);
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
    EXPECT_EQ(nameOf(tableOf(tableInterface()).cellAt(10, 0)), "cell 22") << "made again";
}

TEST_F(QtAccessibilityTest, theCursorsRowIsSelectedAndItsCellHasTheFocus) {
    QAccessibleInterface* const cell = tableOf(tableInterface()).cellAt(1, 0);
    EXPECT_TRUE(cell->state().selected);
    EXPECT_TRUE(cell->state().focused);
    EXPECT_FALSE(content().state().focused);
    EXPECT_EQ(content().focusChild(), cell);
    EXPECT_THAT(tableOf(tableInterface()).selectedRows(), ElementsAre(1));
    EXPECT_FALSE(tableOf(tableInterface()).cellAt(2, 0)->state().focused);
    EXPECT_TRUE(tableOf(tableInterface()).selectRow(5));
    EXPECT_EQ(table->cursor, 12U);
    EXPECT_FALSE(tableOf(tableInterface()).selectRow(100'000));
}

TEST_F(QtAccessibilityTest, elementsAreWhereTheyArePainted) {
    const QPoint corner = widget.mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(content().child(1)->rect(), QRect(corner + QPoint(0, 20), QSize(50, 20)));
    EXPECT_EQ(tableInterface().rect(), QRect(corner + QPoint(100, 50), QSize(150, 100)));
    EXPECT_EQ(tableOf(tableInterface()).cellAt(1, 0)->rect(), QRect(corner + QPoint(100, 70), QSize(10, 10)));
    const QPoint inButton = corner + QPoint(5, 25);
    EXPECT_EQ(content().childAt(inButton.x(), inButton.y()), content().child(1));
    const QPoint inTable = corner + QPoint(105, 75);
    EXPECT_EQ(content().childAt(inTable.x(), inTable.y()), &tableInterface());
    EXPECT_EQ(tableInterface().childAt(inTable.x(), inTable.y())->role(), QAccessible::Cell);
}

TEST_F(QtAccessibilityTest, actionsReachTheView) {
    QAccessibleActionInterface& button = *content().child(1)->actionInterface();
    EXPECT_THAT(button.actionNames(), ElementsAre(QAccessibleActionInterface::pressAction()));
    EXPECT_THAT(button.keyBindingsForAction(QAccessibleActionInterface::pressAction()), ElementsAre("F7"));
    button.doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(root->pressed, ElementsAre(1));
    QAccessibleActionInterface& cell = *tableOf(tableInterface()).cellAt(7, 0)->actionInterface();
    cell.doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(table->cursor, 16U);
    cell.doAction("no such thing");
    EXPECT_TRUE(table->pressed.empty());
}

TEST_F(QtAccessibilityTest, nothingBehindADialogCanBePressed) {
    QAccessibleInterface* const button = content().child(1);
    EXPECT_FALSE(button->state().disabled);
    const auto dialog = openDialog();
    EXPECT_TRUE(button->state().disabled);
    EXPECT_TRUE(tableInterface().state().disabled);
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(root->pressed.empty());
    EXPECT_FALSE(tableOf(tableInterface()).selectRow(0));
    QAccessibleInterface* const shown = content().child(3);
    EXPECT_EQ(shown->role(), QAccessible::Dialog);
    EXPECT_TRUE(shown->state().modal);
    EXPECT_FALSE(shown->state().disabled);
    shown->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(dialog->pressed, ElementsAre(0));
}

TEST_F(QtAccessibilityTest, anActionMayTakeTheDialogAway) {
    auto dialog = openDialog();
    QAccessibleInterface* const button = content().child(3)->child(0);
    const QAccessible::Id id = QAccessible::uniqueId(button);
    dialog->onPress = [weak = std::weak_ptr<MeaningfulView>(dialog)] { weak.lock()->removeFromSuperview(); };
    dialog.reset();
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(content().childCount(), 3);
    announced();
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

TEST_F(QtAccessibilityTest, aViewThatIsGoneIsNotValidAnyMore) {
    QAccessibleInterface& view = tableInterface();
    QAccessibleInterface* const cell = view.child(2);
    table->removeFromSuperview();
    table.reset();
    EXPECT_FALSE(view.isValid());
    EXPECT_FALSE(cell->isValid());
    EXPECT_EQ(view.childCount(), 0);
    EXPECT_EQ(nameOf(cell), "");
    EXPECT_TRUE(cell->state().invalid);
    EXPECT_EQ(content().childCount(), 2);
}

TEST_F(QtAccessibilityTest, whileNobodyListensNothingIsToldAndNoViewIsAsked) {
    ASSERT_FALSE(QAccessible::isActive());
    told.clear();
    root->reached = 0;
    table->reached = 0;
    const auto dialog = openDialog();
    widget.repaint();
    EXPECT_THAT(told, ElementsAre());
    EXPECT_EQ(root->reached, 0);
    EXPECT_EQ(table->reached, 0);

    EXPECT_THAT(announced(), ElementsAre("dialog COPY")) << "there would have been something to tell";
    EXPECT_GT(table->reached, 0);
}

TEST_F(QtAccessibilityTest, aMoveOfTheCursorIsToldOnce) {
    EXPECT_THAT(announced(), ElementsAre("focus cell 4", "selected cell 4"));
    EXPECT_THAT(announced(), ElementsAre());
    table->cursor = 6;
    EXPECT_THAT(announced(), ElementsAre("focus cell 6", "selected cell 6"));
}

TEST_F(QtAccessibilityTest, anotherNameUnderTheCursorIsToldToo) {
    announced();
    table->prefix = "other ";
    table->order = 1;
    EXPECT_THAT(announced(), ElementsAre("name other 4", "focus other 4", "selected other 4"));
}

TEST_F(QtAccessibilityTest, onlyNamesThatSomebodyKnowsAreToldWhenTheyChange) {
    tableOf(tableInterface()).cellAt(0, 1);
    tableOf(tableInterface()).cellAt(500, 1);
    announced();
    table->prefix = "other ";
    EXPECT_THAT(announced(), testing::IsSupersetOf({"name other 3"}));
    EXPECT_THAT(told, Not(Contains("name other 1003"))) << "nobody sees it";
}

TEST_F(QtAccessibilityTest, aDialogIsToldAndThenItsFocusAndAfterwardsThePanelsAgain) {
    announced();
    auto dialog = openDialog();
    dialog->cursor = 1;
    EXPECT_THAT(announced(), ElementsAre("dialog COPY", "focus Cancel"));
    dialog->removeFromSuperview();
    dialog.reset();
    EXPECT_THAT(announced(), ElementsAre("focus cell 4", "selected cell 4"));
}

TEST_F(QtAccessibilityTest, aNativeFieldIsAPartOfTheDialog) {
    const auto dialog = openDialog();
    const auto field = makeQtTextField(widget, {{"DejaVu Sans Mono", 13}, {1, 1, 1}, {0, 0, 0}});
    field->setAccessibleName("Copy to:");
    field->setFrame({20, 100, 100, 20});
    field->focusAndSelectAll();
    QAccessibleInterface* const shown = content().child(3);
    ASSERT_EQ(shown->childCount(), 3);
    QAccessibleInterface* const box = shown->child(2);
    EXPECT_EQ(shown->indexOfChild(box), 2);
    EXPECT_EQ(box->parent(), shown);
    ASSERT_EQ(box->childCount(), 1);
    EXPECT_EQ(box->child(0)->role(), QAccessible::EditableText);
    EXPECT_EQ(nameOf(box->child(0)), "Copy to:");
    EXPECT_TRUE(box->child(0)->state().focused);
    const QPoint place = widget.mapToGlobal(QPoint(30, 110));
    EXPECT_EQ(shown->childAt(place.x(), place.y()), box);

    announced();
    dialog->cursor = 1;
    EXPECT_THAT(announced(), ElementsAre("focus Cancel")) << "Tab highlights a button";
    dialog->cursor.reset();
    EXPECT_THAT(announced(), ElementsAre("focus Copy to:"));
}

}  // namespace vantrel::test
