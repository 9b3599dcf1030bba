#include "dialog/OvDialogOverlayView.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/MainQueue.h"

namespace vantrel {

namespace {

constexpr int cancelButton = 1;

/// What the lines of a sort dialog, and their digits, report.
constexpr std::array sortKeys{"name", "size", "date", "ext"};

}  // namespace

std::shared_ptr<OvDialogOverlayView> OvDialogOverlayView::make(const Rect& frame, const Desktop& desktop) {
    return std::shared_ptr<OvDialogOverlayView>(new OvDialogOverlayView(frame, desktop));
}

OvDialogOverlayView::OvDialogOverlayView(const Rect& frame, const Desktop& desktop)
    : View(frame),
      textFields_(desktop.textFields),
      mainQueue_(desktop.mainQueue),
      fonts_(dialog::retroFonts(desktop.fonts)) {}

void OvDialogOverlayView::setDialogType(DialogType type) {
    inputTextField_.reset();
    const double height = dialog::reportedHeight(type, bounds());
    state_ = {.buttons = dialog::buttonLabels(type), .height = height};
    state_.type = std::move(type);
    ++setUps_;
    if (const auto proposal = dialog::proposedInput(state_.type)) createInputField(*proposal);
    setNeedsDisplay();
}

void OvDialogOverlayView::createInputField(const std::string& text) {
    inputTextField_ = textFields_.makeTextField(dialog::fieldStyle(fonts_));
    inputTextField_->setText(text);
    inputTextField_->setAccessibleName(bodyTexts().front().text);
    const auto weakSelf = std::weak_ptr(std::static_pointer_cast<OvDialogOverlayView>(shared_from_this()));
    inputTextField_->setKeyHandler([weakSelf](const KeyEvent& event) {
        const auto self = weakSelf.lock();
        return self ? self->keyDown(event) : EventResult::ignored;
    });
    placeInputField();
    // Later, because the overlay is put into the window only after its set-up; but not after the next key,
    // which may have been typed already.
    mainQueue_.postAfterEvent([weakSelf] {
        if (const auto self = weakSelf.lock()) self->focusInputField();
    });
}

void OvDialogOverlayView::placeInputField() {
    const Point origin = convertFromWindow({0, 0});  // the window's corner as seen from here
    inputTextField_->setFrame(dialog::fieldArea(dialogRect()).movedBy(-origin.x, -origin.y));
}

void OvDialogOverlayView::focusInputField() {
    if (inputTextField_ == nullptr) return;
    placeInputField();
    inputTextField_->focusAndSelectAll();
}

void OvDialogOverlayView::frameDidChange() {
    if (inputTextField_ != nullptr) placeInputField();
}

Rect OvDialogOverlayView::dialogRect() const {
    return dialog::boxOf(state_, bounds());
}

std::string OvDialogOverlayView::title() const {
    return dialog::title(state_.type);
}

std::vector<dialog::BodyText> OvDialogOverlayView::bodyTexts() const {
    return dialog::bodyTexts(state_.type, dialogRect());
}

Rect OvDialogOverlayView::buttonRect(std::size_t index) const {
    return dialog::paintedButton(dialogRect(), index, buttons().size());
}

void OvDialogOverlayView::draw(Canvas& canvas) {
    dialog::paintDialog(canvas, bounds(), state_, fonts_);
}

EventResult OvDialogOverlayView::keyDown(const KeyEvent& event) {
    // Whatever a held key did when it was pressed, it did not answer this dialog, which would be gone.
    if (event.repeat == KeyRepeat::held && event.key != Key::tab) return EventResult::handled;
    switch (event.key) {
        case Key::escape:
            cancel();
            return EventResult::handled;
        case Key::returnKey:
        case Key::keypadEnter:
            confirmCurrent();
            return EventResult::handled;
        case Key::tab:
            if (!buttons().empty()) {
                state_.selectedButton = (state_.selectedButton + 1) % static_cast<int>(buttons().size());
                setNeedsDisplay();
            }
            return EventResult::handled;
        default:
            return sortKeyDown(event);
    }
}

EventResult OvDialogOverlayView::sortKeyDown(const KeyEvent& event) {
    constexpr std::array<std::string_view, sortKeys.size()> digits{"1", "2", "3", "4"};
    const auto digit = std::ranges::find(digits, event.characters);
    const auto line = static_cast<std::size_t>(digit - digits.begin());
    if (!isSortLine(line)) return EventResult::ignored;
    chooseSortLine(line);
    return EventResult::handled;
}

bool OvDialogOverlayView::isSortLine(std::size_t line) const {
    return std::holds_alternative<dialog::Sort>(state_.type) && line < sortKeys.size();
}

void OvDialogOverlayView::chooseSortLine(std::size_t line) {
    confirm(sortKeys[line]);
}

EventResult OvDialogOverlayView::mouseDown(const MouseEvent& event) {
    const Point point = convertFromWindow(event.locationInWindow);
    if (!dialogRect().contains(point)) {
        cancel();
        return EventResult::handled;
    }
    for (std::size_t index = 0; index < buttons().size(); ++index) {
        if (!dialog::clickableButton(dialogRect(), index, buttons().size()).contains(point)) continue;
        pressButton(index);
        break;
    }
    return EventResult::handled;
}

void OvDialogOverlayView::pressButton(std::size_t index) {
    state_.selectedButton = static_cast<int>(index);
    setNeedsDisplay();
    confirmCurrent();
}

void OvDialogOverlayView::confirmCurrent() {
    if (state_.selectedButton == cancelButton && buttons().size() >= 2) {
        cancel();
    } else if (inputTextField_ != nullptr) {
        confirm(inputTextField_->text());
    } else {
        confirm(std::nullopt);
    }
}

void OvDialogOverlayView::confirm(std::optional<std::string> inputValue) {
    // The delegate may take this view away or give it another type meanwhile.
    const std::shared_ptr<View> self = shared_from_this();
    const DialogType type = state_.type;
    if (const auto held = delegate.lock()) held->dialogDidConfirm(type, std::move(inputValue));
}

void OvDialogOverlayView::cancel() {
    const std::shared_ptr<View> self = shared_from_this();
    if (const auto held = delegate.lock()) held->dialogDidCancel();
}

}  // namespace vantrel
