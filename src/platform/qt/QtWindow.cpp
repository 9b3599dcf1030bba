#include "platform/qt/QtWindow.h"

#include <QCloseEvent>
#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <cmath>
#include <utility>

#include "platform/qt/QtMenuBar.h"

namespace vantrel {

namespace {

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
    giveContent(contentSize_);
    setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size(), screen()->availableGeometry()));
    show();
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

void QtWindow::giveContent(const QSize& contentSize) {
    // A hidden window lays nothing out by itself.
    layout()->invalidate();
    layout()->activate();
    const QSize aroundContent = size() - content_->size();
    resize(contentSize + aroundContent);
}

void QtWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(!shouldClose_ || shouldClose_());
}

}  // namespace vantrel
