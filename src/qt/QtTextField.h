#pragma once

#include "platform/TextField.h"
#include "qt/QtApplication.h"

namespace vantrel {

/// Line edits on top of the content of the application's window. The application is borrowed. Main thread
/// only.
class QtTextFieldFactory final : public TextFieldFactory {
public:
    explicit QtTextFieldFactory(const QtApplication& application) : application_(application) {}
    std::unique_ptr<TextField> makeTextField(const TextFieldStyle& style) override;

private:
    const QtApplication& application_;
};

/// A line edit on top of `content`, which is borrowed and may be destroyed first.
std::unique_ptr<TextField> makeQtTextField(QtContentWidget& content, const TextFieldStyle& style);

}  // namespace vantrel
