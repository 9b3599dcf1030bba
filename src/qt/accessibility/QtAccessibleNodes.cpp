#include "qt/accessibility/QtAccessibleNodes.h"

#include <QWindow>

#include "base/Precondition.h"
#include "qt/QtContentWidget.h"

namespace vantrel {

namespace {

QAccessible::Role qtRole(AccessibleRole role) {
    switch (role) {
        case AccessibleRole::table:
            return QAccessible::Table;
        case AccessibleRole::dialog:
            return QAccessible::Dialog;
        case AccessibleRole::columnHeader:
            return QAccessible::ColumnHeader;
        case AccessibleRole::cell:
            return QAccessible::Cell;
        case AccessibleRole::button:
            return QAccessible::Button;
        case AccessibleRole::label:
            return QAccessible::StaticText;
        case AccessibleRole::group:
            break;
    }
    return QAccessible::Grouping;
}

}  // namespace

bool QtAccessibleNode::isValid() const {
    const std::shared_ptr<View> view = view_.lock();
    return view && view->host() == &tree_.content() && view->accessible() != nullptr;
}

QWindow* QtAccessibleNode::window() const {
    return tree_.content().window()->windowHandle();
}

bool QtAccessibleNode::mayAct() const {
    return tree_.content().takesActions() && !isBehindDialog(view());
}

std::size_t QtAccessibleNode::columnsOfTable() const {
    const std::size_t columns = accessible().columnCount();
    precondition(columns > 0, "a table is asked for where there is none");
    return columns;
}

QAccessibleInterface* QtAccessibleView::parent() const {
    View* const above = view().superview();
    return above == nullptr ? nullptr : tree().interfaceOf(*above);
}

int QtAccessibleView::indexOfChild(const QAccessibleInterface* child) const {
    return isValid() ? tree().indexOfChild(view(), child) : -1;
}

QAccessibleInterface* QtAccessibleView::childAt(int x, int y) const {
    const QPoint inWindow = tree().content().mapFromGlobal(QPoint(x, y));
    return tree().childAt(view(), {static_cast<double>(inWindow.x()), static_cast<double>(inWindow.y())});
}

QAccessibleInterface* QtAccessibleView::focusChild() const {
    const auto focus = tree().focus();
    if (!focus || focus->view != &view()) return nullptr;
    return tree().interfaceOf(view(), focus->element);
}

QString QtAccessibleView::text(QAccessible::Text kind) const {
    if (kind != QAccessible::Name || !isValid()) return {};
    return QString::fromStdString(accessible().name());
}

QRect QtAccessibleView::rect() const {
    return isValid() ? tree().screenRect(view(), accessible().frame()) : QRect();
}

QAccessible::Role QtAccessibleView::role() const {
    return isValid() ? qtRole(accessible().role()) : QAccessible::NoRole;
}

QAccessible::State QtAccessibleView::state() const {
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const bool isDialog = accessible().role() == AccessibleRole::dialog;
    state.modal = isDialog;
    state.active = isDialog;
    state.disabled = isBehindDialog(view());
    state.focusable = !isDialog;
    return state;
}

void* QtAccessibleView::interface_cast(QAccessible::InterfaceType type) {
    if (type != QAccessible::TableInterface || !isValid() || columnCount() == 0) return nullptr;
    return static_cast<QAccessibleTableInterface*>(this);
}

QAccessibleInterface* QtAccessibleView::cellAt(int row, int column) const {
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount()) return nullptr;
    return child((row + 1) * columnCount() + column);
}

QList<QAccessibleInterface*> QtAccessibleView::selectedCells() const {
    QList<QAccessibleInterface*> cells;
    for (const int row : selectedRows()) {
        for (int column = 0; column < columnCount(); ++column) cells.append(cellAt(row, column));
    }
    return cells;
}

QString QtAccessibleView::columnDescription(int column) const {
    if (column < 0 || column >= columnCount()) return {};
    return QString::fromStdString(accessible().element(static_cast<std::size_t>(column)).name);
}

int QtAccessibleView::rowCount() const {
    return static_cast<int>(accessible().elementCount() / columnsOfTable()) - 1;
}

QList<int> QtAccessibleView::selectedRows() const {
    const auto selected = accessible().selectedElement();
    if (!selected) return {};
    return {static_cast<int>(*selected / columnsOfTable()) - 1};
}

bool QtAccessibleView::selectRow(int row) {
    if (row < 0 || row >= rowCount() || !mayAct()) return false;
    accessible().select(static_cast<std::size_t>(row + 1) * columnsOfTable());
    return true;
}

bool QtAccessibleElement::isValid() const {
    return QtAccessibleNode::isValid() && index_ < accessible().elementCount();
}

QString QtAccessibleElement::text(QAccessible::Text kind) const {
    switch (kind) {
        case QAccessible::Name:
            return QString::fromStdString(element().name);
        case QAccessible::Description:
            return QString::fromStdString(element().description);
        case QAccessible::Accelerator:
            return QString::fromStdString(element().keyBinding);
        default:
            return {};
    }
}

QRect QtAccessibleElement::rect() const {
    const AccessibleElement shown = element();
    return shown.isOnShow() ? tree().screenRect(view(), shown.frame) : QRect();
}

QAccessible::Role QtAccessibleElement::role() const {
    return isValid() ? qtRole(element().role) : QAccessible::NoRole;
}

QAccessible::State QtAccessibleElement::state() const {
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const AccessibleElement shown = element();
    state.selectable = shown.isSelectable;
    state.selected = shown.isSelectable && shown.isSelected;
    state.defaultButton = shown.role == AccessibleRole::button && shown.isSelected;
    state.focusable = shown.isSelectable || shown.isPressable;
    state.focused = tree().focus() == AccessiblePlace{&view(), index_};
    state.offscreen = !shown.isOnShow();
    state.disabled = isBehindDialog(view());
    return state;
}

void* QtAccessibleElement::interface_cast(QAccessible::InterfaceType type) {
    if (!isValid()) return nullptr;
    if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
    if (type == QAccessible::TableCellInterface && accessible().columnCount() > 0) {
        return static_cast<QAccessibleTableCellInterface*>(this);
    }
    return nullptr;
}

QStringList QtAccessibleElement::actionNames() const {
    if (!isValid()) return {};
    const AccessibleElement shown = element();
    QStringList names;
    if (shown.isPressable) names.append(pressAction());
    if (shown.isSelectable) names.append(setFocusAction());
    return names;
}

void QtAccessibleElement::doAction(const QString& name) {
    if (!actionNames().contains(name) || !mayAct()) return;
    // The action may destroy the view, and this interface with it.
    const std::shared_ptr<View> held = view().shared_from_this();
    if (name == pressAction()) {
        held->accessible()->press(index_);
    } else {
        held->accessible()->select(index_);
    }
}

QStringList QtAccessibleElement::keyBindingsForAction(const QString& name) const {
    const QString key = text(QAccessible::Accelerator);
    return name == pressAction() && !key.isEmpty() ? QStringList{key} : QStringList{};
}

QList<QAccessibleInterface*> QtAccessibleElement::columnHeaderCells() const {
    if (isTitle()) return {};
    return {tree().interfaceOf(view(), static_cast<std::size_t>(columnIndex()))};
}

int QtAccessibleElement::columnIndex() const {
    return static_cast<int>(index_ % columnsOfTable());
}

int QtAccessibleElement::rowIndex() const {
    return isTitle() ? 0 : static_cast<int>(index_ / columnsOfTable()) - 1;
}

}  // namespace vantrel
