#pragma once

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <memory>

#include "qt/accessibility/QtAccessibleTree.h"

namespace vantrel {

/// What views and elements have in common. The tree is borrowed and outlives its interfaces. Main
/// thread only, as Qt's bridge to the bus is.
class QtAccessibleNode : public QAccessibleInterface {
public:
    QtAccessibleNode(QtAccessibleTree& tree, View& view) : tree_(tree), view_(view.weak_from_this()) {}

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    void setText(QAccessible::Text, const QString&) override {}

    /// Only while `isValid`.
    View& view() const { return *view_.lock(); }
    Accessible& accessible() const { return *view().accessible(); }

protected:
    QtAccessibleTree& tree() const { return tree_; }

    /// False behind an open dialog, and once the program has been told to end.
    bool mayAct() const;

    /// Never 0: only what has columns offers Qt the table interface that divides by it.
    std::size_t columnsOfTable() const;

private:
    QtAccessibleTree& tree_;
    std::weak_ptr<View> view_;
};

/// A view: a panel as a table, or a dialog.
class QtAccessibleView final : public QtAccessibleNode, public QAccessibleTableInterface {
public:
    using QtAccessibleNode::QtAccessibleNode;

    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override { return tree().child(view(), index); }
    int childCount() const override { return isValid() ? tree().childCount(view()) : 0; }
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override;
    int selectedCellCount() const override { return selectedRowCount() * columnCount(); }
    QList<QAccessibleInterface*> selectedCells() const override;
    QString columnDescription(int column) const override;
    QString rowDescription(int) const override { return {}; }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
    int columnCount() const override { return static_cast<int>(accessible().columnCount()); }
    int rowCount() const override;
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override { return selectedRows().contains(row); }
    bool selectRow(int row) override;
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent*) override {}
};

/// A cell, a column's title, a button or a text.
class QtAccessibleElement final : public QtAccessibleNode,
                                  public QAccessibleActionInterface,
                                  public QAccessibleTableCellInterface {
public:
    QtAccessibleElement(QtAccessibleTree& tree, View& view, std::size_t index)
        : QtAccessibleNode(tree, view), index_(index) {}

    std::size_t index() const { return index_; }

    bool isValid() const override;
    QAccessibleInterface* parent() const override { return tree().interfaceOf(view()); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

    bool isSelected() const override { return element().isSelected; }
    QList<QAccessibleInterface*> columnHeaderCells() const override;
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override;
    int rowIndex() const override;
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return parent(); }

private:
    /// Empty when the element no longer exists.
    AccessibleElement element() const {
        return isValid() ? accessible().element(index_) : AccessibleElement{};
    }
    bool isTitle() const { return index_ < accessible().columnCount(); }

    std::size_t index_;
};

}  // namespace vantrel
