#include "dialog/OvDialogOverlayView.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/MainQueue.h"
#include "theme/OvPalette.h"

namespace vantrel {

namespace {

// Points.
constexpr double fontSize = 13;
constexpr double smallestMargin = 20;
constexpr double boxWidth = 560;
constexpr double helpWidth = 640;
constexpr double helpHeight = 490;
constexpr double viewerSideMargins = 80;
constexpr double viewerEndMargins = 60;
constexpr double smallestViewerWidth = 560;
constexpr double smallestViewerHeight = 300;
constexpr double fieldSideMargin = 30;
constexpr double fieldTop = 105;
constexpr double fieldHeight = 26;
constexpr double buttonPitch = 120;
constexpr double buttonsTop = 45;  // above the box's bottom edge
constexpr Size clickableButton{100, 28};

constexpr int cancelButton = 1;

/// What the lines of a sort dialog, and their digits, report.
constexpr std::array sortKeys{"name", "size", "date", "ext"};

/// What the set-up of one kind of dialog amounts to.
struct Layout {
    double height;
    std::vector<std::string> buttons;
    std::optional<std::string> inputText;  ///< of the field, where there is one
};

struct LayoutOf {
    double viewHeight;

    Layout operator()(const dialog::Copy& copy) const { return {220, {" Copy ", "Cancel"}, copy.destPath}; }
    Layout operator()(const dialog::Move& move) const {
        return {220, {" Rename ", "Cancel"}, move.defaultName};
    }
    Layout operator()(const dialog::Mkdir&) const { return {200, {" Create ", "Cancel"}, "New_Folder"}; }
    Layout operator()(const dialog::Delete&) const { return {200, {" Delete ", "Cancel"}, std::nullopt}; }
    Layout operator()(const dialog::Viewer&) const {
        return {std::min(viewHeight - 40, 600.0), {" Close "}, std::nullopt};
    }
    Layout operator()(const dialog::Help&) const { return {440, {" OK "}, std::nullopt}; }
    Layout operator()(const dialog::Sort&) const { return {260, {" Select ", "Cancel"}, std::nullopt}; }
};

}  // namespace

std::shared_ptr<OvDialogOverlayView> OvDialogOverlayView::make(const Rect& frame, const Desktop& desktop) {
    return std::shared_ptr<OvDialogOverlayView>(new OvDialogOverlayView(frame, desktop));
}

OvDialogOverlayView::OvDialogOverlayView(const Rect& frame, const Desktop& desktop)
    : View(frame),
      fonts_(desktop.fonts),
      textFields_(desktop.textFields),
      mainQueue_(desktop.mainQueue),
      retroFont_(OvPalette::retroFont(fonts_, fontSize, FontWeight::regular)),
      boldRetroFont_(OvPalette::retroFont(fonts_, fontSize, FontWeight::bold)) {}

void OvDialogOverlayView::setDialogType(DialogType type) {
    dialogType_ = std::move(type);
    ++setUps_;
    setupDialogUI();
    setNeedsDisplay();
}

void OvDialogOverlayView::setupDialogUI() {
    inputTextField_.reset();
    selectedButtonIndex_ = 0;
    Layout layout = std::visit(LayoutOf{bounds().height}, dialogType_);
    dialogHeight_ = layout.height;
    buttons_ = std::move(layout.buttons);
    if (layout.inputText) createInputField(*layout.inputText);
}

void OvDialogOverlayView::createInputField(const std::string& text) {
    inputTextField_ =
        textFields_.makeTextField({.font = OvPalette::retroFont(fonts_, fontSize, FontWeight::regular),
                                   .textColor = OvPalette::dosBrightWhite,
                                   .background = OvPalette::dosDarkBlue});
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
    const Rect box = dialogRect();
    const Point origin = convertFromWindow({0, 0});  // the window's corner as seen from here
    inputTextField_->setFrame(Rect{box.minX() + fieldSideMargin, box.minY() + fieldTop,
                                   box.width - 2 * fieldSideMargin, fieldHeight}
                                  .movedBy(-origin.x, -origin.y));
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
    const Rect view = bounds();
    Size size{boxWidth, dialogHeight_};
    if (isViewer(dialogType_)) {
        size = {std::max(view.width - viewerSideMargins, smallestViewerWidth),
                std::max(view.height - viewerEndMargins, smallestViewerHeight)};
    } else if (std::holds_alternative<dialog::Help>(dialogType_)) {
        size = {helpWidth, helpHeight};
    }
    return {std::max((view.width - size.width) * 0.5, smallestMargin),
            std::max((view.height - size.height) * 0.5, smallestMargin), size.width, size.height};
}

Point OvDialogOverlayView::buttonCorner(std::size_t index) const {
    const Rect box = dialogRect();
    return {box.midX() - static_cast<double>(buttons_.size()) * buttonPitch / 2 +
                static_cast<double>(index) * buttonPitch,
            box.maxY() - buttonsTop};
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
            if (!buttons_.empty()) {
                selectedButtonIndex_ = (selectedButtonIndex_ + 1) % static_cast<int>(buttons_.size());
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
    return std::holds_alternative<dialog::Sort>(dialogType_) && line < sortKeys.size();
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
    for (std::size_t index = 0; index < buttons_.size(); ++index) {
        const Point corner = buttonCorner(index);
        if (!Rect{corner.x, corner.y, clickableButton.width, clickableButton.height}.contains(point))
            continue;
        pressButton(index);
        break;
    }
    return EventResult::handled;
}

void OvDialogOverlayView::pressButton(std::size_t index) {
    selectedButtonIndex_ = static_cast<int>(index);
    setNeedsDisplay();
    confirmCurrent();
}

void OvDialogOverlayView::confirmCurrent() {
    if (selectedButtonIndex_ == cancelButton && buttons_.size() >= 2) {
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
    const DialogType type = dialogType_;
    if (const auto held = delegate.lock()) held->dialogDidConfirm(type, std::move(inputValue));
}

void OvDialogOverlayView::cancel() {
    const std::shared_ptr<View> self = shared_from_this();
    if (const auto held = delegate.lock()) held->dialogDidCancel();
}

}  // namespace vantrel
