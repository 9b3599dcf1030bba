#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dialog/DialogAccessible.h"
#include "dialog/DialogType.h"
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
    double dialogWidth = 560;  ///< points; the box has a width of its own

    /// An overlay that shows nothing yet. The ports are borrowed.
    static std::shared_ptr<OvDialogOverlayView> make(const Rect& frame, const Desktop& desktop);

    /// A line of the box's content and how it is painted, in this view's coordinates.
    struct BodyText {
        std::string text;
        Rect area;
        Font font;
        Color color;
    };

    std::weak_ptr<OvDialogDelegate> delegate;

    const DialogType& dialogType() const { return dialogType_; }

    /// Shows another dialog from its beginning: first button highlighted, input field new or gone. The field
    /// takes the keyboard, its text selected, once the event that is being handled is over.
    void setDialogType(DialogType type);

    /// Borrowed, null where the dialog has no field.
    TextField* inputTextField() const { return inputTextField_.get(); }
    int selectedButtonIndex() const { return selectedButtonIndex_; }
    const std::vector<std::string>& buttons() const { return buttons_; }
    double dialogHeight() const { return dialogHeight_; }

    /// The box, in this view's coordinates: centred, but never closer than 20 to the left and top edges.
    Rect dialogRect() const;

    /// As painted: with a blank at either end.
    std::string title() const;
    std::vector<BodyText> bodyTexts() const;
    Rect buttonRect(std::size_t index) const;  ///< as painted
    bool isSortLine(std::size_t line) const;   ///< whether that body text is an order to choose

    /// Grows with every `setDialogType`.
    std::uint64_t setUps() const { return setUps_; }

    /// What Return does: cancels when the second button is highlighted, else confirms with the field's text.
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

    void setupDialogUI();
    void createInputField(const std::string& text);
    void placeInputField();
    void focusInputField();
    void confirm(std::optional<std::string> inputValue);
    void cancel();
    EventResult sortKeyDown(const KeyEvent& event);

    /// Upper left corner of a button; both its painted and its clickable rectangle start there.
    Point buttonCorner(std::size_t index) const;

    void drawBox(Canvas& canvas, const Rect& box) const;
    void drawTitle(Canvas& canvas, const Rect& box) const;
    void drawBody(Canvas& canvas) const;
    void drawButtons(Canvas& canvas) const;

    std::vector<BodyText> bodyTexts(const dialog::Copy& copy) const;
    std::vector<BodyText> bodyTexts(const dialog::Move& move) const;
    std::vector<BodyText> bodyTexts(const dialog::Mkdir& mkdir) const;
    std::vector<BodyText> bodyTexts(const dialog::Delete& deletion) const;
    std::vector<BodyText> bodyTexts(const dialog::Viewer& viewer) const;
    std::vector<BodyText> bodyTexts(const dialog::Help& help) const;
    std::vector<BodyText> bodyTexts(const dialog::Sort& sort) const;
    BodyText prompt(std::string text) const;
    Rect viewerArea() const;

    FontCatalog& fonts_;
    TextFieldFactory& textFields_;
    MainQueue& mainQueue_;
    DialogType dialogType_ = dialog::Help{};
    std::unique_ptr<TextField> inputTextField_;
    int selectedButtonIndex_ = 0;
    std::vector<std::string> buttons_;
    Font retroFont_;
    Font boldRetroFont_;
    double dialogHeight_ = 340;
    std::uint64_t setUps_ = 0;
    DialogAccessible accessible_{*this};
};

}  // namespace vantrel
