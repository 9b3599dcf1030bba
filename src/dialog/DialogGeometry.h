#pragma once

#include <cstddef>
#include <vector>

#include "dialog/DialogState.h"
#include "dialog/DialogTexts.h"
#include "platform/Geometry.h"

/// Where a dialog has its parts, for painting, for clicks and for the field. Points, in the overlay's
/// coordinates; `view` is always the overlay's bounds and `box` what `boxOf` says.
namespace vantrel::dialog {

// The box.
inline constexpr double smallestMargin = 20;  // left and above; a box too large runs off right and below
inline constexpr double boxWidth = 560;
inline constexpr double inputHeight = 220;
inline constexpr double shortHeight = 200;  // of a question that needs less room
inline constexpr double sortHeight = 260;
inline constexpr double helpWidth = 640;
inline constexpr double helpHeight = 490;
inline constexpr double viewerSideMargins = 80;
inline constexpr double viewerEndMargins = 60;
inline constexpr double smallestViewerWidth = 560;
inline constexpr double smallestViewerHeight = 300;

// What these two kinds report as `dialogHeight`; their boxes go by the rules above and never by these.
inline constexpr double reportedHelpHeight = 440;
inline constexpr double reportedViewerMargins = 40;
inline constexpr double largestReportedViewerHeight = 600;

// Shadow, frame and title.
inline constexpr double shadowOffset = 12;
inline constexpr double outerFrameInset = 3;
inline constexpr double innerFrameInset = 5;
inline constexpr double frameLineWidth = 1.5;
inline constexpr double titleTop = 2;
inline constexpr double titleMargin = 4;
inline constexpr double titleHeight = 22;

// A question and its field.
inline constexpr double textMargin = 30;
inline constexpr double promptTop = 50;
inline constexpr double itemNameTop = 76;
inline constexpr double trashNoteTop = 104;
inline constexpr double lineHeight = 24;
inline constexpr double fieldTop = 105;
inline constexpr double fieldHeight = 26;

// The viewer. A line's area is a point higher than the pitch, so neighbours overlap by a point: sixteen
// points keep descenders whole, fifteen show more lines.
inline constexpr double viewerSideMargin = 15;
inline constexpr double viewerTop = 30;
inline constexpr double viewerHeightMargins = 85;
inline constexpr double viewerTextMargin = 8;
inline constexpr double viewerTextTop = 6;
inline constexpr double viewerLineHeight = 16;
inline constexpr double viewerLinePitch = 15;
inline constexpr std::size_t viewerLineLimit = 80;
inline constexpr double viewerBytesPerPoint = 8;  // more than fits of any script

// The keyboard reference.
inline constexpr double helpTop = 32;
inline constexpr double helpPitch = 19;
inline constexpr double helpLineHeight = 18;
inline constexpr double helpKeyX = 25;
inline constexpr double helpKeyWidth = 120;
inline constexpr double helpDescriptionX = 150;
inline constexpr double helpDescriptionMargins = 170;

// The sort orders. They stand further in on the left (50) than on the right (30) on purpose: this is a list,
// not a centred text.
inline constexpr double sortX = 50;
inline constexpr double sortMargins = 80;
inline constexpr double sortTop = 50;
inline constexpr double sortPitch = 32;
inline constexpr double sortLineHeight = 26;

// The buttons. The pitch counts the gap behind the last one too, so the row stands 10 points left of the
// middle. A click may miss what is painted by two points below; the two heights are kept apart for that.
inline constexpr double buttonPitch = 120;
inline constexpr double buttonsTop = 45;  // above the box's bottom edge
inline constexpr double buttonLineWidth = 1;
inline constexpr Size paintedButtonSize{100, 26};
inline constexpr Size clickableButtonSize{100, 28};

/// A text of the body and where it stands.
struct BodyText {
    std::string text;
    TextStyle style;
    Rect area;
};

/// What a dialog reports as its height.
double reportedHeight(const DialogType& type, const Rect& view);

/// The box: centred, but never closer to the left and top edges than the smallest margin.
Rect boxOf(const DialogState& state, const Rect& view);

Rect fieldArea(const Rect& box);
Rect paintedButton(const Rect& box, std::size_t index, std::size_t count);
Rect clickableButton(const Rect& box, std::size_t index, std::size_t count);

/// What is behind a file's text.
Rect viewerArea(const Rect& box);

std::vector<BodyText> bodyTexts(const DialogType& type, const Rect& box);

}  // namespace vantrel::dialog
