#pragma once

#include <optional>
#include <string>

#include "dialog/DialogType.h"

namespace vantrel {

/// Hears how a dialog was answered. Main thread; called from inside the dialog's key or mouse handling, and
/// free to take the dialog away there and then.
class OvDialogDelegate {
public:
    virtual ~OvDialogDelegate() = default;

    /// `inputValue` is the text of the dialog's field where it has one, the sort key ("name", "size", "date"
    /// or "ext") where a sort dialog was answered by a digit, else nothing.
    virtual void dialogDidConfirm(const DialogType& type, std::optional<std::string> inputValue) = 0;

    virtual void dialogDidCancel() = 0;
};

}  // namespace vantrel
