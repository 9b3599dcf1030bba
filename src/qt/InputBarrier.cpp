#include "qt/InputBarrier.h"

#include <QCoreApplication>

namespace vantrel {

namespace {

bool isInput(QEvent::Type type) {
    switch (type) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
            return true;
        default:
            return false;
    }
}

}  // namespace

void InputBarrier::letDown() {
    // Of several filters the one installed last is asked first.
    qApp->installEventFilter(this);
}

void InputBarrier::lift() {
    qApp->removeEventFilter(this);
}

bool InputBarrier::eventFilter(QObject*, QEvent* event) {
    return isInput(event->type());
}

}  // namespace vantrel
