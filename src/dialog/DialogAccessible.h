#pragma once

#include "platform/Accessible.h"

namespace vantrel {

class OvDialogOverlayView;

/// A dialog's texts and buttons. Its input field is a native one and speaks for itself. Owned by the dialog.
/// Main thread only.
class DialogAccessible final : public Accessible {
public:
    explicit DialogAccessible(OvDialogOverlayView& dialog) : dialog_(dialog) {}

    AccessibleRole role() const override { return AccessibleRole::dialog; }
    std::string name() const override;
    Rect frame() const override;
    std::size_t elementCount() const override;
    AccessibleElement element(std::size_t index) const override;
    std::optional<std::size_t> focusedElement() const override;
    void press(std::size_t index) override;
    std::uint64_t revision() const override;

private:
    OvDialogOverlayView& dialog_;
};

}  // namespace vantrel
