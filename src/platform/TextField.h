#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Color.h"
#include "platform/Events.h"
#include "platform/Font.h"
#include "platform/Geometry.h"

namespace vantrel {

struct TextFieldStyle {
    Font font;
    Color textColor;
    Color background;
};

/// A native line edit on top of the window's content, with the desktop's selection, clipboard, undo and input
/// methods. Destroying it takes it out of the window. Main thread only.
class TextField {
public:
    using KeyHandler = std::function<EventResult(const KeyEvent&)>;
    virtual ~TextField() = default;

    virtual void setFrame(const Rect& inWindow) = 0;

    /// UTF-8 where the user typed; what the user has not touched are exactly the bytes that were set, whether
    /// they are text or not.
    virtual std::string text() const = 0;
    virtual void setText(const std::string& text) = 0;

    /// How assistive technology calls the field. UTF-8.
    virtual void setAccessibleName(const std::string& name) = 0;

    /// Takes the keyboard and selects all of the text.
    virtual void focusAndSelectAll() = 0;

    /// Return, keypad Enter, Escape, Tab and the function keys typed into the field go to `handler` and to
    /// nobody else. The handler may destroy the field.
    virtual void setKeyHandler(KeyHandler handler) = 0;
};

/// Port: where line edits come from.
class TextFieldFactory {
public:
    virtual ~TextFieldFactory() = default;
    virtual std::unique_ptr<TextField> makeTextField(const TextFieldStyle& style) = 0;
};

}  // namespace vantrel
