#include "qt/accessibility/QtAccessibleContent.h"

#include <QAccessibleWidget>

#include "qt/QtContentWidget.h"
#include "qt/accessibility/QtAccessibleTree.h"

namespace vantrel {

namespace {

Point inWindow(const QtContentWidget& content, int x, int y) {
    const QPoint place = content.mapFromGlobal(QPoint(x, y));
    return {static_cast<double>(place.x()), static_cast<double>(place.y())};
}

/// The widget in the role of its root view.
class QtAccessibleContent final : public QAccessibleWidget {
public:
    explicit QtAccessibleContent(QtContentWidget& content)
        : QAccessibleWidget(&content, QAccessible::Grouping), content_(content) {}

    QString text(QAccessible::Text kind) const override {
        View* const root = content_.root();
        if (kind != QAccessible::Name || root == nullptr || root->accessible() == nullptr)
            return QAccessibleWidget::text(kind);
        return QString::fromStdString(root->accessible()->name());
    }
    int childCount() const override { return content_.root() == nullptr ? 0 : tree().childCount(root()); }
    QAccessibleInterface* child(int index) const override {
        return index < 0 || index >= childCount() ? nullptr : tree().child(root(), index);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return content_.root() == nullptr ? -1 : tree().indexOfChild(root(), child);
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return content_.root() == nullptr ? nullptr : tree().childAt(root(), inWindow(content_, x, y));
    }
    QAccessibleInterface* focusChild() const override {
        const auto focus = tree().focus();
        return focus ? tree().interfaceOf(*focus->view, focus->element) : QAccessibleWidget::focusChild();
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        if (tree().focus()) state.focused = false;
        return state;
    }

private:
    QtAccessibleTree& tree() const { return QtAccessibleTree::of(content_); }
    View& root() const { return *content_.root(); }

    QtContentWidget& content_;
};

/// The box around a native field: a part of the open dialog.
class QtAccessibleField final : public QAccessibleWidget {
public:
    QtAccessibleField(QWidget& box, QtContentWidget& content)
        : QAccessibleWidget(&box, QAccessible::Grouping), content_(content) {}

    QAccessibleInterface* parent() const override {
        View* const dialog = QtAccessibleTree::of(content_).dialog();
        return dialog == nullptr ? QAccessibleWidget::parent()
                                 : QtAccessibleTree::of(content_).interfaceOf(*dialog);
    }

private:
    QtContentWidget& content_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (auto* const content = dynamic_cast<QtContentWidget*>(object))
        return new QtAccessibleContent(*content);
    if (auto* const widget = dynamic_cast<QWidget*>(object)) {
        auto* const content = dynamic_cast<QtContentWidget*>(widget->parentWidget());
        if (content != nullptr) return new QtAccessibleField(*widget, *content);
    }
    return nullptr;
}

}  // namespace

void installQtAccessibility() {
    QAccessible::installFactory(makeInterface);
    QtContentWidget::setObserverFactory([](QtContentWidget& content) -> std::unique_ptr<QtContentObserver> {
        return std::make_unique<QtAccessibleTree>(content);
    });
}

}  // namespace vantrel
