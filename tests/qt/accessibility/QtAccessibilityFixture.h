#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>
#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "qt/QtContentWidget.h"
#include "qt/QtTextField.h"
#include "qt/accessibility/QtAccessibleTree.h"

namespace vantrel::test {

/// A view whose meaning a test sets, and which counts what is asked of it.
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
            return {.role = buttonRole,
                    .name = buttons[index],
                    .description = "what it does",
                    .keyBinding = "F7",
                    .frame = {0, 20.0 * static_cast<double>(index), 50, 20},
                    .isPressable = true,
                    .isSelected = index == cursor};
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
    AccessibleRole buttonRole = AccessibleRole::button;
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

/// What was told, in order.
inline std::vector<std::string> told;

inline void keepWhatIsTold(QAccessibleEvent* event) {
    QAccessibleInterface* const about = event->accessibleInterface();
    const std::string name = about == nullptr ? "nobody" : about->text(QAccessible::Name).toStdString();
    const auto add = [&](const char* what) { told.push_back(what + name); };
    if (event->type() == QAccessible::Focus) add("focus ");
    if (event->type() == QAccessible::SelectionAdd) add("selected ");
    if (event->type() == QAccessible::NameChanged) add("name ");
    if (event->type() == QAccessible::ObjectShow) add("show ");
    if (event->type() == QAccessible::DialogStart) add("dialog ");
    if (event->type() == QAccessible::TableModelChanged) add("order ");
}

/// A content with two buttons of its own and a table of a hundred thousand rows.
class QtAccessibilityFixture : public testing::Test {
protected:
    QtAccessibilityFixture() {
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
        QtAccessibleTree::of(widget).setListener(keepWhatIsTold);
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
        QtAccessibleTree::of(widget).announceChanges();
        return told;
    }

    std::shared_ptr<MeaningfulView> openDialog() {
        auto dialog = std::make_shared<MeaningfulView>(AccessibleRole::dialog, "COPY");
        dialog->buttons = {"Copy", "Cancel"};
        dialog->setFrame({0, 0, 300, 200});
        root->addSubview(dialog);
        return dialog;
    }

    /// A native field with the focus.
    std::unique_ptr<TextField> openField() {
        auto field = makeQtTextField(widget, {{"DejaVu Sans Mono", 13}, {1, 1, 1}, {0, 0, 0}});
        field->setAccessibleName("Copy to:");
        field->setFrame({20, 100, 100, 20});
        field->focusAndSelectAll();
        return field;
    }

    std::shared_ptr<MeaningfulView> root =
        std::make_shared<MeaningfulView>(AccessibleRole::group, "Commander");
    std::shared_ptr<MeaningfulView> table = std::make_shared<MeaningfulView>(AccessibleRole::table, "Left");
    QtContentWidget widget{Color{0, 0, 0.67}};
};

}  // namespace vantrel::test
