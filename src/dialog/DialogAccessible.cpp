#include "dialog/DialogAccessible.h"

#include "dialog/OvDialogOverlayView.h"

namespace vantrel {

namespace {

std::string withoutPadding(std::string text) {
    text.erase(0, text.find_first_not_of(' '));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

}  // namespace

// The elements: the buttons, then the texts.

std::string DialogAccessible::name() const {
    return withoutPadding(dialog_.title());
}

Rect DialogAccessible::frame() const {
    return dialog_.dialogRect();
}

std::size_t DialogAccessible::elementCount() const {
    return dialog_.buttons().size() + dialog_.bodyTexts().size();
}

AccessibleElement DialogAccessible::element(std::size_t index) const {
    const std::size_t buttonCount = dialog_.buttons().size();
    if (index < buttonCount) {
        return {.role = AccessibleRole::button,
                .name = withoutPadding(dialog_.buttons()[index]),
                .description = "",
                .keyBinding = "",
                .frame = dialog_.buttonRect(index),
                .isPressable = true,
                .isSelected = static_cast<int>(index) == dialog_.selectedButtonIndex()};
    }
    const std::size_t line = index - buttonCount;
    const dialog::BodyText text = dialog_.bodyTexts()[line];
    const bool isChoice = dialog_.isSortLine(line);
    return {.role = isChoice ? AccessibleRole::button : AccessibleRole::label,
            .name = withoutPadding(text.text),
            .description = "",
            .keyBinding = isChoice ? std::to_string(line + 1) : "",
            .frame = text.area,
            .isPressable = isChoice};
}

// The first button is what Return in the field does anyway, so the field keeps the focus until Tab has left
// it.
std::optional<std::size_t> DialogAccessible::focusedElement() const {
    const int button = dialog_.selectedButtonIndex();
    if (button == 0 && dialog_.inputTextField() != nullptr) return std::nullopt;
    return static_cast<std::size_t>(button);
}

void DialogAccessible::press(std::size_t index) {
    const std::size_t buttonCount = dialog_.buttons().size();
    if (index < buttonCount) {
        dialog_.pressButton(index);
    } else if (dialog_.isSortLine(index - buttonCount)) {
        dialog_.chooseSortLine(index - buttonCount);
    }
}

std::uint64_t DialogAccessible::revision() const {
    return dialog_.setUps();
}

}  // namespace vantrel
