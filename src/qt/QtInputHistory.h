#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QObject>
#include <QPoint>
#include <map>

#include "platform/Events.h"

namespace vantrel {

/// Works out from earlier events, in any window of the program, what Qt leaves open about an event. Main
/// thread only.
class QtInputHistory final : public QObject {
public:
    /// The application's own, which watches from the first call until the application ends.
    static QtInputHistory& ofApplication();

    /// Whether the press only means that the key is still held. Qt does not mark all of those; but on X11
    /// each of them carries the time of the release before it, and comes only after a while.
    KeyRepeat repeatOf(const QKeyEvent& press) const;

    /// Which click of its series the last press of a mouse button was. A series is presses of one button,
    /// each as close to the one before in time and place as the desktop demands of a double click, with no
    /// key in between. Qt itself counts only to two.
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
        quint64 press = 0;    ///< the last that was not a repeat; both in milliseconds
        quint64 release = 0;  ///< the last one
    };

    std::map<quint32, KeyTimes> keys_;  ///< by scan code
    int clickCount_ = 0;
    Qt::MouseButton button_ = Qt::NoButton;  ///< this and the next two: of the last press
    quint64 time_ = 0;
    QPoint place_;  ///< on the screen
};

/// The program's key event for a press, which may be one of a key that is only being held.
KeyEvent pressedKey(const QKeyEvent& press);

}  // namespace vantrel
