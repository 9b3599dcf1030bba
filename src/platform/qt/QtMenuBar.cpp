#include "platform/qt/QtMenuBar.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <algorithm>
#include <string>
#include <utility>

#include "platform/qt/QtKeys.h"

namespace vantrel {

namespace {

constexpr Qt::KeyboardModifiers otherModifiers = Qt::AltModifier | Qt::MetaModifier;

/// A title in which Qt finds no mnemonic.
QString literally(const std::string& title) {
    return QString::fromStdString(title).replace('&', "&&");
}

QKeySequence shortcutFor(const std::string& keyEquivalent) {
    if (keyEquivalent == "\t") return QKeyCombination(Qt::ControlModifier, Qt::Key_Tab);
    // The names of Qt's other keys are the codes of their upper case characters.
    const auto character = QString::fromStdString(keyEquivalent).toUpper().toUcs4().value(0);
    return QKeyCombination(Qt::ControlModifier, static_cast<Qt::Key>(character));
}

bool means(const QKeyEvent& event, const std::string& keyEquivalent) {
    if (event.modifiers() & otherModifiers) return false;
    const KeyEvent key = keyEventFrom(event);
    if (key.command == CommandKey::released) return false;
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    if (keyEquivalent == "\t") return key.key == Key::tab && !shift;
    if (keyEquivalent == " ") return key.key == Key::space && !shift;
    // What the key types follows Shift already.
    return key.charactersIgnoringModifiers == keyEquivalent;
}

/// Takes key equivalents out of the application's events before any window sees them. Qt's own shortcuts are
/// not enough: they know no other keyboard layout than the present one, and ask the focused widget first.
class KeyEquivalents final : public QObject {
public:
    explicit KeyEquivalents(QObject* parent) : QObject(parent) { qApp->installEventFilter(this); }

    void add(std::string keyEquivalent, QAction* action) {
        items_.emplace_back(std::move(keyEquivalent), action);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        const bool isPress = event->type() == QEvent::KeyPress;
        if (!isPress && event->type() != QEvent::ShortcutOverride) return false;
        if (QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr)
            return false;
        const auto& key = *static_cast<QKeyEvent*>(event);
        const auto item =
            std::ranges::find_if(items_, [&](const auto& candidate) { return means(key, candidate.first); });
        if (item == items_.end()) return false;
        event->accept();
        // An accepted override says that the press itself is wanted, so Qt starts no shortcut of its own.
        if (isPress) item->second->trigger();
        return true;
    }

private:
    std::vector<std::pair<std::string, QAction*>> items_;  ///< the menu bar's actions
};

}  // namespace

QMenuBar* makeQtMenuBar(const std::vector<Menu>& menus, QWidget* parent) {
    auto* const bar = new QMenuBar(parent);
#ifndef Q_OS_MACOS
    bar->setNativeMenuBar(false);
#endif
    auto* const keys = new KeyEquivalents(bar);
    for (const Menu& menu : menus) {
        QMenu* const shown = bar->addMenu(literally(menu.title));
        for (const MenuItem& item : menu.items) {
            if (item.isSeparator()) {
                shown->addSeparator();
                continue;
            }
            QAction* const action = shown->addAction(literally(item.title));
            QObject::connect(action, &QAction::triggered, action, item.action);
            if (item.keyEquivalent.empty()) continue;
            action->setShortcut(shortcutFor(item.keyEquivalent));
            keys->add(item.keyEquivalent, action);
        }
    }
    return bar;
}

}  // namespace vantrel
