#include "commander/CommanderAccessible.h"

#include "commander/OvCommanderView.h"

namespace vantrel {

namespace {

// The elements: the prompt line, then the cells.
constexpr std::size_t promptElement = 0;
constexpr std::size_t firstCell = 1;

}  // namespace

std::string CommanderAccessible::name() const {
    return "Vantrel Commander";
}

Rect CommanderAccessible::frame() const {
    return commander_.bounds();
}

std::size_t CommanderAccessible::elementCount() const {
    return firstCell + commander_.fnButtons().size();
}

AccessibleElement CommanderAccessible::element(std::size_t index) const {
    if (index == promptElement) {
        return {.role = AccessibleRole::label,
                .name = commander_.promptLine(),
                .description = "",
                .keyBinding = "",
                .frame = commander_.promptBar()};
    }
    const OvCommanderView::FnButton& button = commander_.fnButtons()[index - firstCell];
    return {.role = AccessibleRole::button,
            .name = button.label,
            .description = "",
            .keyBinding = "F" + button.num,
            .frame = button.rect,
            .isPressable = true};
}

void CommanderAccessible::press(std::size_t index) {
    if (index >= firstCell) commander_.runFnCommand(index - firstCell);
}

}  // namespace vantrel
