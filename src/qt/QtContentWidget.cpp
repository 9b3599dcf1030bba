#include "qt/QtContentWidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "qt/QtCanvas.h"
#include "qt/QtInputHistory.h"
#include "qt/QtKeys.h"

namespace vantrel {

namespace {

// The time between two frames: as short as screens allow and, for what changes by itself, as short as an eye
// can follow figures. Painting takes time from the walks that the figures come from.
constexpr qint64 frameMilliseconds = 16;
constexpr qint64 frameInPassingMilliseconds = 50;

Point pointFrom(const QPointF& position) {
    return {position.x(), position.y()};
}

QtContentWidget::ObserverFactory observerFactory = nullptr;

}  // namespace

void QtContentWidget::setObserverFactory(ObserverFactory factory) {
    observerFactory = factory;
}

QtContentWidget::QtContentWidget(const Color& background, QWidget* parent)
    : QWidget(parent), background_(background) {
    if (observerFactory != nullptr) observer_ = observerFactory(*this);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_InputMethodEnabled);
    setInputMethodHints(Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    // Not by a click, which would take the keyboard from a dialog's field.
    setFocusPolicy(Qt::TabFocus);
    QtInputHistory::ofApplication();
}

QtContentWidget::~QtContentWidget() {
    if (root_) root_->setHost(nullptr);
}

void QtContentWidget::setRoot(std::shared_ptr<View> root) {
    if (root_) root_->setHost(nullptr);
    root_ = std::move(root);
    root_->setHost(this);
    fitRoot();
    update();
}

void QtContentWidget::scheduleRedraw(Redraw urgency) {
    if (redrawTimer_.isActive() && (urgency == Redraw::inPassing || timedRedraw_ == Redraw::atOnce)) return;
    const qint64 pause = urgency == Redraw::atOnce ? frameMilliseconds : frameInPassingMilliseconds;
    const qint64 elapsed = sinceRedraw_.isValid() ? sinceRedraw_.elapsed() : pause;
    if (elapsed >= pause) {
        update();
    } else {
        redrawTimer_.start(static_cast<int>(pause - elapsed), Qt::PreciseTimer, this);
        timedRedraw_ = urgency;
    }
}

void QtContentWidget::focusContent() {
    setFocus(Qt::OtherFocusReason);
}

void QtContentWidget::timerEvent(QTimerEvent* event) {
    if (event->timerId() != redrawTimer_.timerId()) return QWidget::timerEvent(event);
    redrawTimer_.stop();
    update();
}

void QtContentWidget::paintEvent(QPaintEvent*) {
    redrawTimer_.stop();
    sinceRedraw_.start();
    QPainter painter(this);
    QtCanvas canvas(painter, faces_);
    canvas.fill({0, 0, static_cast<double>(width()), static_cast<double>(height())}, background_);
    if (root_) root_->drawTree(canvas);
    if (observer_) observer_->contentWasPainted();
}

void QtContentWidget::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    if (observer_) observer_->contentGotTheKeyboard();
    scheduleRedraw(Redraw::atOnce);
}

void QtContentWidget::resizeEvent(QResizeEvent*) {
    fitRoot();
}

void QtContentWidget::fitRoot() {
    if (root_) root_->setFrame({0, 0, static_cast<double>(width()), static_cast<double>(height())});
}

bool QtContentWidget::event(QEvent* event) {
    return takesKey(*event, [this](const QKeyEvent& key) { sendKey(pressedKey(key)); }) ||
           QWidget::event(event);
}

void QtContentWidget::sendKey(const KeyEvent& event) {
    const std::shared_ptr<View> root = root_;
    if (root) root->keyDown(event);
}

// Gets the second press of a double click too, since Qt passes those on to this function unless they are
// handled separately.
void QtContentWidget::mousePressEvent(QMouseEvent* event) {
    const std::shared_ptr<View> root = root_;
    if (!root || event->button() != Qt::LeftButton) return;
    const int clickCount = QtInputHistory::ofApplication().clickCount();
    clicks_.mouseDown(*root, {pointFrom(event->position()), clickCount});
}

void QtContentWidget::wheelEvent(QWheelEvent* event) {
    const std::shared_ptr<View> root = root_;
    event->accept();
    if (!root || event->angleDelta().y() == 0) return;
    const int steps = wheel_.add(event->angleDelta().y());
    for (int step = 0; step < std::abs(steps); ++step)
        dispatchScrollWheel(*root, {pointFrom(event->position()), steps > 0 ? 1.0 : -1.0});
}

void QtContentWidget::inputMethodEvent(QInputMethodEvent* event) {
    event->accept();
    if (!event->commitString().isEmpty()) sendKey(keyEventFromCommit(event->commitString()));
}

QVariant QtContentWidget::inputMethodQuery(Qt::InputMethodQuery query) const {
    switch (query) {
        case Qt::ImEnabled:
            return true;
        case Qt::ImCursorRectangle:
            // There is no text cursor; at the lower edge candidate windows are out of the way.
            return QRect(0, height() - 1, 1, 1);
        default:
            return QWidget::inputMethodQuery(query);
    }
}

}  // namespace vantrel
