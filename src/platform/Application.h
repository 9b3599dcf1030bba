#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Color.h"
#include "platform/Geometry.h"
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

/// Port: the running program as the desktop sees it. Main thread only.
class Application {
public:
    virtual ~Application() = default;

    virtual std::unique_ptr<Window> makeWindow(const WindowOptions& options) = 0;

    /// Ends the event loop soon; safe inside any callback.
    virtual void terminate() = 0;
};

}  // namespace vantrel
