#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dialog/DialogAccessible.h"
#include "dialog/DialogGeometry.h"
#include "dialog/DialogPainter.h"
#include "dialog/DialogState.h"
#include "dialog/OvDialogDelegate.h"
#include "platform/Desktop.h"
#include "platform/Font.h"
#include "platform/TextField.h"
#include "platform/View.h"

namespace vantrel {

/// One modal dialog: dims what it covers, shows its box in the middle, and reports the answer. It never takes
/// itself away; whoever shows it does that, also from inside the delegate's callbacks. Without a delegate an
/// answer is dropped and the dialog stays. Main thread only; geometry in points.
class OvDialogOverlayView final : public View {
public:
    /// How wide a dialog is said to be, in points. Setting it changes nothing, on purpose: how wide the box
    /// is belongs to the kind of dialog, and no owner may push the buttons out of it.
    double dialogWidth = dialog::boxWidth;

    /// An overlay that shows nothing yet. The ports are borrowed.
    static std::shared_ptr<OvDialogOverlayView> make(const Rect& frame, const Desktop& desktop);

    std::weak_ptr<OvDialogDelegate> delegate;

    /// All that a painter needs; the members below say the same one by one.
    const DialogState& state() const { return state_; }
    const DialogType& dialogType() const { return state_.type; }

    /// Shows another dialog from its beginning: first button highlighted, input field new or gone. The field
    /// takes the keyboard, its text selected, once the event that is being handled is over.
    void setDialogType(DialogType type);

    /// Borrowed, null where the dialog has no field.
    TextField* inputTextField() const { return inputTextField_.get(); }
    int selectedButtonIndex() const { return state_.selectedButton; }
    const std::vector<std::string>& buttons() const { return state_.buttons; }
    double dialogHeight() const { return state_.height; }

    // What is painted, and where in this view's coordinates.
    Rect dialogRect() const;
    std::string title() const;
    std::vector<dialog::BodyText> bodyTexts() const;
    Rect buttonRect(std::size_t index) const;
    bool isSortLine(std::size_t line) const;  ///< whether that body text is an order to choose

    /// Grows with every `setDialogType`.
    std::uint64_t setUps() const { return setUps_; }

    /// What Return does: cancels when the second button is highlighted, else confirms with the field's text.
    /// A sort dialog is confirmed without an order then, which leaves the panel as it is: its digits choose.
    void confirmCurrent();

    void pressButton(std::size_t index);
    void chooseSortLine(std::size_t line);

    void draw(Canvas& canvas) override;
    Accessible* accessible() override { return &accessible_; }
    bool acceptsFirstResponder() const override { return true; }
    EventResult keyDown(const KeyEvent& event) override;
    EventResult mouseDown(const MouseEvent& event) override;

protected:
    void frameDidChange() override;

private:
    OvDialogOverlayView(const Rect& frame, const Desktop& desktop);

    void createInputField(const std::string& text);
    void placeInputField();
    void focusInputField();
    void confirm(std::optional<std::string> inputValue);
    void cancel();
    EventResult sortKeyDown(const KeyEvent& event);

    TextFieldFactory& textFields_;
    MainQueue& mainQueue_;
    const dialog::Fonts fonts_;
    DialogState state_;
    std::unique_ptr<TextField> inputTextField_;
    std::uint64_t setUps_ = 0;
    DialogAccessible accessible_{*this};
};

}  // namespace vantrel
