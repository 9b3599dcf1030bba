#pragma once

#include <QApplication>
#include <QPointer>
#include <functional>
#include <string>
#include <vector>

#include "platform/Application.h"
#include "qt/InputBarrier.h"
#include "qt/QtWindow.h"

namespace vantrel {

/// The connection to the desktop. There is one for the life of the process, made before anything else of Qt,
/// on the main thread, which alone may use it. Without a display it prints one line to standard error and
/// ends the process with status 1.
class QtApplication final : public Application {
public:
    /// `programName` is argv[0]; no other argument reaches Qt.
    explicit QtApplication(const char* programName);

    std::unique_ptr<Window> makeWindow(const WindowOptions& options) override;
    void setMainMenu(std::vector<Menu> menus) override;
    void runModal(const Alert& alert) override;
    void terminate() override;

    /// Serves events until `terminate` or until the last window is closed.
    void run();

    /// Called each time the program is told to end; the place to drop work that is still waiting.
    void setTerminationHandler(std::function<void()> handler);

    /// Content of the window that was made last; null when there is none.
    QtContentWidget* content() const;

private:
    int argumentCount_ = 1;
    std::string programName_;
    char* arguments_[2];  ///< QApplication keeps referring to it
    QApplication application_;
    QPointer<QtWindow> window_;
    InputBarrier afterTermination_;
    std::function<void()> terminationHandler_;
    std::vector<Menu> mainMenu_;
};

}  // namespace vantrel
