#include "qt/QtWindow.h"

#include <QCloseEvent>
#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <QTimerEvent>
#include <QWindow>
#include <chrono>
#include <cmath>
#include <utility>

#include "platform/WindowPlacement.h"
#include "qt/QtMenuBar.h"

namespace vantrel {

namespace {

// A frame comes within a few hundredths of a second after the window, or not at all.
constexpr int frameInterval = 10;  // milliseconds
constexpr std::chrono::milliseconds framePatience{1000};

QSize wholePoints(const Size& size) {
    return {static_cast<int>(std::ceil(size.width)), static_cast<int>(std::ceil(size.height))};
}

}  // namespace

QtWindow::QtWindow(const WindowOptions& options)
    : content_(new QtContentWidget(options.background)), contentSize_(wholePoints(options.contentSize)) {
    setWindowTitle(QString::fromStdString(options.title));
    content_->setMinimumSize(wholePoints(options.minimumContentSize));
    setCentralWidget(content_);
    giveContent(contentSize_);
}

void QtWindow::setContentView(std::shared_ptr<View> content) {
    content_->setRoot(std::move(content));
}

void QtWindow::centerAndShow() {
    const int side = style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    place({side, style()->pixelMetric(QStyle::PM_TitleBarHeight), side, side});  // a guess
    show();
    frameDeadline_.setRemainingTime(framePatience);
    frameTimer_.start(frameInterval, this);
    raise();
    activateWindow();
    content_->focusContent();
}

void QtWindow::setShouldClose(std::function<bool()> shouldClose) {
    shouldClose_ = std::move(shouldClose);
}

void QtWindow::showMenus(const std::vector<Menu>& menus) {
    const QSize contentSize = isVisible() ? content_->size() : contentSize_;
    setMenuBar(makeQtMenuBar(menus, this));
    menuBar()->show();
    giveContent(contentSize);
}

// Returns how much more the window needs for what stands around the content.
QSize QtWindow::giveContent(const QSize& contentSize) {
    // A hidden window lays nothing out by itself.
    layout()->invalidate();
    layout()->activate();
    const QSize aroundContent = size() - content_->size();
    resize(contentSize + aroundContent);
    return aroundContent;
}

void QtWindow::place(const QMargins& frame) {
    const int menus = giveContent(contentSize_).height();
    const QRect available = screen()->availableGeometry();
    const Rect place = placeContent(
        {double(available.x()), double(available.y()), double(available.width()), double(available.height())},
        {double(contentSize_.width()), double(contentSize_.height())},
        {double(content_->minimumWidth()), double(content_->minimumHeight())},
        {double(frame.left()), double(frame.top() + menus), double(frame.right()), double(frame.bottom())});
    placed_ = {static_cast<int>(place.x), static_cast<int>(place.y) - menus, static_cast<int>(place.width),
               static_cast<int>(place.height) + menus};
    setGeometry(placed_);
}

void QtWindow::timerEvent(QTimerEvent* event) {
    if (event->timerId() != frameTimer_.timerId()) return QMainWindow::timerEvent(event);
    const bool hasFrame = windowHandle() != nullptr && !windowHandle()->frameMargins().isNull();
    if (!hasFrame && !frameDeadline_.hasExpired()) return;
    frameTimer_.stop();
    placeAgainInItsFrame();
}

// Only where that makes a difference, and not when somebody else has given the window its place or size
// meanwhile.
void QtWindow::placeAgainInItsFrame() {
    const bool isOurs = windowState() == Qt::WindowNoState && size() == placed_.size();
    const bool isInSight = screen()->availableGeometry().contains(frameGeometry());
    if (!isOurs || (isInSight && content_->size() == contentSize_)) return;
    place(windowHandle()->frameMargins());
}

void QtWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(!shouldClose_ || shouldClose_());
}

}  // namespace vantrel
