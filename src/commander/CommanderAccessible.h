#pragma once

#include "platform/Accessible.h"

namespace vantrel {

class OvCommanderView;

/// What the commander paints around its panels: the prompt line and the cells of the function-key bar.
/// Owned by the commander. Main thread only.
class CommanderAccessible final : public Accessible {
public:
    explicit CommanderAccessible(OvCommanderView& commander) : commander_(commander) {}

    AccessibleRole role() const override { return AccessibleRole::group; }
    std::string name() const override;
    Rect frame() const override;
    std::size_t elementCount() const override;
    AccessibleElement element(std::size_t index) const override;
    std::optional<std::size_t> focusedElement() const override { return std::nullopt; }
    void press(std::size_t index) override;

private:
    OvCommanderView& commander_;
};

}  // namespace vantrel
