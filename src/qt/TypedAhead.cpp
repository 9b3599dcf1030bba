#include "qt/TypedAhead.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <utility>

namespace vantrel {

void TypedAhead::collect() {
    qApp->installEventFilter(this);
    // Without timers: only what has been sent already.
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::X11ExcludeTimers);
    qApp->removeEventFilter(this);
}

bool TypedAhead::eventFilter(QObject* watched, QEvent* event) {
    if (!event->spontaneous() || !watched->isWindowType()) return false;
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            keys_.emplace_back(event->clone());
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
            return true;
        default:
            return false;
    }
}

void TypedAhead::deliver(const std::function<QWindow*()>& receiver) {
    while (!keys_.empty()) {
        QWindow* const window = receiver();
        if (window == nullptr) return;
        const std::unique_ptr<QEvent> key = std::move(keys_.front());
        keys_.pop_front();
        QCoreApplication::sendEvent(window, key.get());
    }
}

}  // namespace vantrel
