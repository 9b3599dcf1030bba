#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Geometry.h"

/// What the bars around the panels say, wherever and in whatever they are painted. UTF-8, harmless to show.
namespace vantrel::commander {

/// Decoration: nothing opens below them, and clicks pass them by. The initials stand out.
inline constexpr std::array<std::string_view, 5> menuLabels{"Left", "Files", "Commands", "Options", "Right"};
inline constexpr std::string_view menuTitle = "Vantrel Commander";

/// Behind the prompt; it does not blink.
inline constexpr std::string_view promptCursor = "█";

/// One cell of the function-key bar; its place in the list is the number of its command.
struct FnButton {
    std::string num;
    std::string label;
    Rect rect;  ///< where it is painted and clicked, in points
};

/// The cells from F1 on, not laid out yet.
std::vector<FnButton> fnButtons();

/// "user@Mac:folder$ " with "~" in place of the home folder. The arguments are raw bytes.
std::string promptLine(const std::string& user, const std::string& home, const std::string& folder);

/// What the bars show at this moment.
struct BarsState {
    std::string prompt;
    const std::vector<FnButton>& fnButtons;  ///< borrowed
};

}  // namespace vantrel::commander
