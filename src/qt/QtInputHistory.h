#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QObject>
#include <QPoint>
#include <map>

#include "platform/Events.h"

namespace vantrel {

/// Tells what Qt leaves open about an event by what came before it, in whichever window of the program. Main
/// thread only.
class QtInputHistory final : public QObject {
public:
    /// The application's one, which watches from the first call on until the application ends.
    static QtInputHistory& ofApplication();

    /// Whether the press only says that the key is still held. Qt's own mark is missing on some of those; but
    /// on X11 every one of them carries the time of the release before it, and comes only after a while.
    KeyRepeat repeatOf(const QKeyEvent& press) const;

    /// The number of the last press of a mouse button in its series: presses of one button, each no later
    /// after the one before and no further from it than the desktop allows for a double click, and no key
    /// between them. Qt counts to two.
    int clickCount() const { return clickCount_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit QtInputHistory(QObject* parent);
    void notePress(const QKeyEvent& press);
    void countPress(const QMouseEvent& press);
    void followMove(const QMouseEvent& move);
    bool isNear(const QPoint& place) const;

    struct KeyTimes {
        quint64 press = 0;    ///< the last one that was no repeat; milliseconds, as the next
        quint64 release = 0;  ///< the last one
    };

    std::map<quint32, KeyTimes> keys_;  ///< by scan code
    int clickCount_ = 0;
    Qt::MouseButton button_ = Qt::NoButton;  ///< of the last press; this and the next two
    quint64 time_ = 0;
    QPoint place_;  ///< on the screen
};

/// The program's key event for a press, which may be one of a key that is only being held.
KeyEvent pressedKey(const QKeyEvent& press);

}  // namespace vantrel
