#include "qt/QtInputHistory.h"

#include <QApplication>
#include <QPointer>
#include <QStyleHints>
#include <cstdlib>

#include "qt/QtKeys.h"

namespace vantrel {

namespace {

// No keyboard repeats sooner after a press. Within this time, a press with the time of a release is a press
// of its own: a busy X server may handle the simulated input of two programs within one millisecond.
constexpr quint64 shortestRepeatDelay = 100;  // milliseconds

}  // namespace

QtInputHistory& QtInputHistory::ofApplication() {
    static QPointer<QtInputHistory> history;
    if (!history) history = new QtInputHistory(qApp);
    return *history;
}

QtInputHistory::QtInputHistory(QObject* parent) : QObject(parent) {
    parent->installEventFilter(this);
}

KeyRepeat QtInputHistory::repeatOf(const QKeyEvent& press) const {
    const auto times = keys_.find(press.nativeScanCode());
    // A press without a code comes from no keyboard, and one without a time has nothing to compare.
    const bool isKnown = press.nativeScanCode() != 0 && press.timestamp() != 0 && times != keys_.end();
    bool isHeld = press.isAutoRepeat();
    if (isKnown && times->second.release == press.timestamp())
        isHeld = press.timestamp() - times->second.press >= shortestRepeatDelay;
    return isHeld ? KeyRepeat::held : KeyRepeat::first;
}

bool QtInputHistory::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyRelease: {
            const auto& release = *static_cast<QKeyEvent*>(event);
            keys_[release.nativeScanCode()].release = release.timestamp();
            break;
        }
        case QEvent::KeyPress:
            notePress(*static_cast<QKeyEvent*>(event));
            break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            countPress(*static_cast<QMouseEvent*>(event));
            break;
        case QEvent::MouseMove:
            followMove(*static_cast<QMouseEvent*>(event));
            break;
        default:
            break;
    }
    return false;
}

void QtInputHistory::notePress(const QKeyEvent& press) {
    // A click after a key begins a new series.
    button_ = Qt::NoButton;
    if (repeatOf(press) == KeyRepeat::first) keys_[press.nativeScanCode()].press = press.timestamp();
}

void QtInputHistory::countPress(const QMouseEvent& press) {
    const QPoint place = press.globalPosition().toPoint();
    // The same press arrives twice: for the window, and for its widget.
    if (press.button() == button_ && press.timestamp() == time_ && place == place_) return;
    const auto interval = static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    const bool isSoon = press.button() == button_ && press.timestamp() - time_ < interval && isNear(place);
    const bool isSecondForQt = press.type() == QEvent::MouseButtonDblClick;
    clickCount_ = isSoon || isSecondForQt ? clickCount_ + 1 : 1;
    button_ = press.button();
    time_ = press.timestamp();
    place_ = place;
}

// A pointer that goes away and comes back begins a new series.
void QtInputHistory::followMove(const QMouseEvent& move) {
    if (!isNear(move.globalPosition().toPoint())) button_ = Qt::NoButton;
}

bool QtInputHistory::isNear(const QPoint& place) const {
    const int distance = QGuiApplication::styleHints()->mouseDoubleClickDistance();
    const QPoint way = place - place_;
    return std::abs(way.x()) <= distance && std::abs(way.y()) <= distance;
}

KeyEvent pressedKey(const QKeyEvent& press) {
    KeyEvent key = keyEventFrom(press);
    key.repeat = QtInputHistory::ofApplication().repeatOf(press);
    return key;
}

}  // namespace vantrel
