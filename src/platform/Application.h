#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Color.h"
#include "platform/Geometry.h"
#include "platform/Menu.h"
#include "platform/View.h"

namespace vantrel {

struct WindowOptions {
    std::string title;        ///< UTF-8
    Size contentSize;         ///< points, without the window's frame and menu bar
    Size minimumContentSize;  ///< points
    Color background;
};

/// Port: one window with a tree of views in it. Main thread only.
class Window {
public:
    virtual ~Window() = default;

    /// Fills the window with `content`, which follows its size from now on and gets every key.
    virtual void setContentView(std::shared_ptr<View> content) = 0;

    /// Centres the window where the desktop lets programs do so, shows it in front and takes the keyboard.
    virtual void centerAndShow() = 0;

    /// Asked when the user closes the window; answers whether it may close.
    virtual void setShouldClose(std::function<bool()> shouldClose) = 0;
};

/// A message with one button.
struct Alert {
    std::string messageText;
    std::string informativeText;
    std::string button;
};

/// Port: the running program as the desktop sees it. Main thread only.
class Application {
public:
    virtual ~Application() = default;

    virtual std::unique_ptr<Window> makeWindow(const WindowOptions& options) = 0;

    /// Offers the menus in the desktop's native menu bar, from now on and for the window that has been made.
    /// An item's key equivalent works wherever the keyboard is.
    virtual void setMainMenu(std::vector<Menu> menus) = 0;

    /// Shows a modal alert and returns when it has been answered.
    virtual void runModal(const Alert& alert) = 0;

    /// Ends the event loop soon; safe inside any callback. From here on no input reaches the program, not
    /// even what has been typed already.
    virtual void terminate() = 0;
};

}  // namespace vantrel
