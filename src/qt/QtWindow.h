#pragma once

#include <QBasicTimer>
#include <QDeadlineTimer>
#include <QMainWindow>
#include <functional>
#include <memory>
#include <vector>

#include "platform/Application.h"
#include "qt/QtContentWidget.h"

namespace vantrel {

/// A native window around a QtContentWidget. Its sizes are the content's: the window's frame and a menu bar
/// come on top. On a screen where that does not fit it opens smaller, see `placeContent`. Main thread only.
class QtWindow final : public QMainWindow, public Window {
public:
    explicit QtWindow(const WindowOptions& options);

    void setContentView(std::shared_ptr<View> content) override;
    void centerAndShow() override;
    void setShouldClose(std::function<bool()> shouldClose) override;

    /// Puts a menu bar with these menus above the content, which keeps its size; replaces an earlier one.
    void showMenus(const std::vector<Menu>& menus);

    QtContentWidget& content() const { return *content_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    QSize giveContent(const QSize& contentSize);
    void place(const QMargins& frame);
    void placeAgainInItsFrame();

    QtContentWidget* content_;  ///< owned by QMainWindow
    QSize contentSize_;
    QRect placed_;  ///< where it opened, without its frame
    QBasicTimer frameTimer_;
    QDeadlineTimer frameDeadline_;
    std::function<bool()> shouldClose_;
};

}  // namespace vantrel
