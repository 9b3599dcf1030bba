#include "qt/QtMenuBar.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "qt/QtInputHistory.h"
#include "qt/QtKeys.h"

namespace vantrel {

namespace {

constexpr Qt::KeyboardModifiers otherModifiers = Qt::AltModifier | Qt::MetaModifier;
constexpr Qt::KeyboardModifiers besidesAlt = Qt::ControlModifier | Qt::ShiftModifier | Qt::MetaModifier;

/// A title in which Qt finds no mnemonic.
QString literally(const std::string& title) {
    return QString::fromStdString(title).replace('&', "&&");
}

QKeySequence shortcutFor(const std::string& keyEquivalent) {
    if (keyEquivalent == "\t") return QKeyCombination(Qt::ControlModifier, Qt::Key_Tab);
    // Qt names its other keys by the codes of their upper case characters.
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
    // Shift has already had its effect on these characters.
    return key.charactersIgnoringModifiers == keyEquivalent;
}

/// Takes key equivalents, and Alt with a menu's letter, out of the application's events before any window
/// sees them. Qt's own shortcuts are not enough: they know only the current keyboard layout, and ask the
/// focused widget first.
class KeyEquivalents final : public QObject {
public:
    explicit KeyEquivalents(QMenuBar* bar) : QObject(bar), bar_(*bar) { qApp->installEventFilter(this); }

    void add(std::string keyEquivalent, QAction* action) {
        items_.emplace_back(std::move(keyEquivalent), action);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        const bool isPress = event->type() == QEvent::KeyPress;
        if (!isPress && event->type() != QEvent::ShortcutOverride) return false;
        if (QApplication::activeModalWidget() != nullptr) return false;
        const auto& key = *static_cast<QKeyEvent*>(event);
        const std::function<void()> answer = answerTo(key);
        if (!answer) return false;
        event->accept();
        // An accepted override says that the press itself is wanted, so Qt starts no shortcut of its own.
        const bool isFirst = QtInputHistory::ofApplication().repeatOf(key) == KeyRepeat::first;
        if (isPress && isFirst) answer();
        return true;
    }

private:
    std::function<void()> answerTo(const QKeyEvent& key) const {
        if (QAction* const menu = menuNamedBy(key)) return [this, menu] { bar_.setActiveAction(menu); };
        if (QApplication::activePopupWidget() != nullptr) return nullptr;
        const auto item =
            std::ranges::find_if(items_, [&](const auto& candidate) { return means(key, candidate.first); });
        if (item == items_.end()) return nullptr;
        return [action = item->second] { action->trigger(); };
    }

    /// The menu that Alt with this key asks for: of those whose title begins with its letter, the one after
    /// the open one, else the first. Null where there is none.
    QAction* menuNamedBy(const QKeyEvent& key) const {
        if (!key.modifiers().testFlag(Qt::AltModifier) || (key.modifiers() & besidesAlt)) return nullptr;
        const QString letter = QString::fromStdString(charactersWithoutControl(key));
        if (letter.isEmpty() || !letter.front().isLetter()) return nullptr;
        QList<QAction*> matches = bar_.actions();
        matches.removeIf(
            [&](const QAction* menu) { return !menu->text().startsWith(letter, Qt::CaseInsensitive); });
        if (matches.isEmpty()) return nullptr;
        return matches.value(matches.indexOf(bar_.activeAction()) + 1, matches.front());
    }

    QMenuBar& bar_;
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
