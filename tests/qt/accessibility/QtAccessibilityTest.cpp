#include "qt/accessibility/QtAccessibilityFixture.h"

namespace vantrel::test {

namespace {

using testing::ElementsAre;

class QtAccessibilityTest : public QtAccessibilityFixture {};

}  // namespace

TEST_F(QtAccessibilityTest, theContentStandsForItsRootView) {
    EXPECT_EQ(nameOf(&content()), "Commander");
    ASSERT_EQ(content().childCount(), 3);
    EXPECT_EQ(content().child(0)->role(), QAccessible::Button);
    EXPECT_EQ(nameOf(content().child(1)), "Quit");
    EXPECT_EQ(content().child(2)->role(), QAccessible::Table);
    EXPECT_EQ(content().child(3), nullptr);
    EXPECT_EQ(content().child(-1), nullptr);
    EXPECT_EQ(content().indexOfChild(tableInterface().child(2)), -1) << "the table's, not the content's";
    for (int index = 0; index < 3; ++index) {
        QAccessibleInterface* const child = content().child(index);
        EXPECT_EQ(content().indexOfChild(child), index);
        EXPECT_EQ(child->parent(), &content());
        EXPECT_EQ(content().child(index), child) << "the same each time";
    }
}

TEST_F(QtAccessibilityTest, aContentWithoutARootIsEmpty) {
    QtContentWidget bare{Color{0, 0, 0.67}};
    QAccessibleInterface& empty = *QAccessible::queryAccessibleInterface(&bare);
    EXPECT_EQ(empty.childCount(), 0);
    EXPECT_EQ(empty.child(0), nullptr);
    EXPECT_EQ(empty.childAt(1, 1), nullptr);
    EXPECT_EQ(empty.indexOfChild(content().child(0)), -1);
}

TEST_F(QtAccessibilityTest, elementsHaveTheRolesThatAssistiveTechnologyKnows) {
    EXPECT_EQ(tableInterface().child(0)->role(), QAccessible::ColumnHeader);
    EXPECT_EQ(tableInterface().child(2)->role(), QAccessible::Cell);
    root->buttonRole = AccessibleRole::label;
    EXPECT_EQ(content().child(0)->role(), QAccessible::StaticText);
    EXPECT_EQ(content().child(0)->text(QAccessible::Description).toStdString(), "what it does");
    EXPECT_EQ(content().child(0)->window(), widget.windowHandle());
}

TEST_F(QtAccessibilityTest, onlyATableHasCells) {
    QAccessibleInterface* const button = content().child(0);
    EXPECT_EQ(button->tableCellInterface(), nullptr);
    openDialog();
    EXPECT_EQ(content().child(3)->tableInterface(), nullptr);
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
    EXPECT_TRUE(tableInterface().child(1)->tableCellInterface()->columnHeaderCells().isEmpty());
    EXPECT_TRUE(last->state().offscreen);
    EXPECT_EQ(last->rect(), QRect());
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
    EXPECT_EQ(table->asked, 2) << "the focus, and the one element that is known and on show";
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
    EXPECT_TRUE(cell->state().selectable);
    EXPECT_TRUE(cell->state().selected);
    EXPECT_TRUE(cell->state().focusable);
    EXPECT_TRUE(cell->state().focused);
    EXPECT_TRUE(tableInterface().state().focusable);
    EXPECT_FALSE(content().state().focused);
    EXPECT_EQ(content().focusChild(), cell);
    EXPECT_EQ(tableInterface().focusChild(), cell);
    EXPECT_THAT(tableOf(tableInterface()).selectedRows(), ElementsAre(1));
    EXPECT_THAT(tableOf(tableInterface()).selectedCells(),
                ElementsAre(cell, tableOf(tableInterface()).cellAt(1, 1)));
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
    EXPECT_TRUE(button.keyBindingsForAction(QAccessibleActionInterface::setFocusAction()).isEmpty());
    QAccessibleActionInterface& cell = *tableOf(tableInterface()).cellAt(7, 0)->actionInterface();
    cell.doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(table->cursor, 16U);
    table->cursor = 2;
    cell.doAction("no such thing");
    EXPECT_EQ(table->cursor, 2U);
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
    EXPECT_TRUE(shown->state().active);
    EXPECT_FALSE(shown->state().focusable) << "only what is in it";
    EXPECT_FALSE(shown->state().disabled);
    shown->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(dialog->pressed, ElementsAre(0));
}

TEST_F(QtAccessibilityTest, nothingCanBePressedOrSelectedWhileTheContentTakesNoActions) {
    QAccessibleActionInterface& button = *content().child(1)->actionInterface();
    widget.setTakesActions(false);
    button.doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(root->pressed.empty());
    EXPECT_FALSE(tableOf(tableInterface()).selectRow(0));
    widget.setTakesActions(true);
    button.doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(root->pressed, ElementsAre(1));
}

TEST_F(QtAccessibilityTest, aDialogsHighlightedButtonIsItsDefaultAndHasTheFocus) {
    const auto dialog = openDialog();
    dialog->cursor = 1;
    QAccessibleInterface* const button = content().child(3)->child(1);
    EXPECT_TRUE(button->state().defaultButton);
    EXPECT_TRUE(button->state().focusable);
    EXPECT_TRUE(button->state().focused);
    EXPECT_FALSE(button->state().selected) << "that is for rows";
    EXPECT_FALSE(content().child(3)->child(0)->state().defaultButton);
    EXPECT_EQ(content().child(3)->focusChild(), button);
    EXPECT_EQ(tableInterface().focusChild(), nullptr);
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

TEST_F(QtAccessibilityTest, aRowThatIsGoneIsNotValidAnyMore) {
    QAccessibleInterface* const last = tableOf(tableInterface()).cellAt(99'999, 0);
    table->rows = 10;
    EXPECT_FALSE(last->isValid());
    EXPECT_EQ(nameOf(last), "");
}

TEST_F(QtAccessibilityTest, aViewOutsideTheWindowIsNotValid) {
    QAccessibleInterface& view = tableInterface();
    table->removeFromSuperview();
    EXPECT_FALSE(view.isValid());
    root->addSubview(table);
    EXPECT_TRUE(view.isValid());
}

TEST_F(QtAccessibilityTest, aViewThatIsGoneIsNotValidAnyMore) {
    QAccessibleInterface& view = tableInterface();
    QAccessibleInterface* const cell = view.child(2);
    table->removeFromSuperview();
    table.reset();
    EXPECT_FALSE(view.isValid());
    EXPECT_TRUE(view.state().invalid);
    EXPECT_FALSE(cell->isValid());
    EXPECT_EQ(view.childCount(), 0);
    EXPECT_EQ(nameOf(cell), "");
    EXPECT_TRUE(cell->state().invalid);
    EXPECT_EQ(content().childCount(), 2);
}

TEST_F(QtAccessibilityTest, aNativeFieldIsAPartOfTheDialog) {
    const auto dialog = openDialog();
    const auto field = openField();
    QAccessibleInterface* const shown = content().child(3);
    ASSERT_EQ(shown->childCount(), 3);
    EXPECT_EQ(content().childCount(), 4) << "and of nothing else";
    QAccessibleInterface* const box = shown->child(2);
    EXPECT_EQ(shown->indexOfChild(box), 2);
    EXPECT_EQ(box->parent(), shown);
    ASSERT_EQ(box->childCount(), 1);
    EXPECT_EQ(box->child(0)->role(), QAccessible::EditableText);
    EXPECT_EQ(nameOf(box->child(0)), "Copy to:");
    EXPECT_TRUE(box->child(0)->state().focused);
    const QPoint place = widget.mapToGlobal(QPoint(30, 110));
    EXPECT_EQ(shown->childAt(place.x(), place.y()), box);
}

}  // namespace vantrel::test
