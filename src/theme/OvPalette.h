#pragma once

#include <string_view>

#include "platform/Color.h"
#include "platform/Font.h"

namespace vantrel {

/// Every colour, font and frame character that the program draws with: the sixteen-colour text screen of an
/// old PC. A namespace of constants; nobody makes one. Any thread.
struct OvPalette {
    OvPalette() = delete;

    static constexpr Color dosBlue{0.0, 0.0, 0.66, 1.0};
    static constexpr Color dosDarkBlue{0.0, 0.0, 0.52, 1.0};
    static constexpr Color dosCyan{0.0, 0.67, 0.67, 1.0};
    static constexpr Color dosBrightCyan{0.33, 1.0, 1.0, 1.0};
    static constexpr Color dosYellow{1.0, 1.0, 0.33, 1.0};
    static constexpr Color dosBrightWhite{1.0, 1.0, 1.0, 1.0};
    static constexpr Color dosWhite{0.85, 0.85, 0.85, 1.0};
    static constexpr Color dosLightGray{0.67, 0.67, 0.67, 1.0};
    static constexpr Color dosDarkGray{0.33, 0.33, 0.33, 1.0};
    static constexpr Color dosBlack{0.0, 0.0, 0.0, 1.0};
    static constexpr Color dosGreen{0.33, 1.0, 0.33, 1.0};
    static constexpr Color dosRed{1.0, 0.33, 0.33, 1.0};
    /// A teal kept with its set; dialogs are painted in dosCyan.
    static constexpr Color dosDialogBg{0.0, 0.55, 0.55, 1.0};
    static constexpr Color dosMenuBarBg{0.67, 0.67, 0.67, 1.0};

    // Roles. A reference is the base colour itself: redefine the base and the role follows.
    static constexpr const Color& activeSelectionBg = dosCyan;
    static constexpr const Color& activeSelectionText = dosBlack;
    static constexpr Color inactiveSelectionBg{0.0, 0.3, 0.5, 1.0};
    static constexpr const Color& inactiveSelectionText = dosWhite;
    static constexpr const Color& fnKeyNumBg = dosBlack;
    static constexpr const Color& fnKeyNumText = dosBrightCyan;
    static constexpr const Color& fnKeyLblBg = dosCyan;
    static constexpr const Color& fnKeyLblText = dosBlack;

    /// The first of "Menlo", "SF Mono" and "Courier" that the desktop has, bold by conversion to the family's
    /// bold face; failing all three, the desktop's monospaced face with that weight. `size` in points.
    /// Looked up anew at each call: views keep what they got.
    static Font retroFont(const FontCatalog& fonts, double size, FontWeight weight);

    /// Frame characters, one character cell each (UTF-8). The drawing strokes its frames; these are for text.
    struct BoxChars {
        BoxChars() = delete;
        static constexpr std::string_view topLeft = "╔";
        static constexpr std::string_view topRight = "╗";
        static constexpr std::string_view bottomLeft = "╚";
        static constexpr std::string_view bottomRight = "╝";
        static constexpr std::string_view horizontal = "═";
        static constexpr std::string_view vertical = "║";
        static constexpr std::string_view topTee = "╦";
        static constexpr std::string_view bottomTee = "╩";
        static constexpr std::string_view leftTee = "╠";
        static constexpr std::string_view rightTee = "╣";
        static constexpr std::string_view cross = "╬";
        static constexpr std::string_view singleHoriz = "─";
        static constexpr std::string_view singleVert = "│";
        static constexpr std::string_view doubleLeftSingleRight = "╞";
        static constexpr std::string_view doubleRightSingleLeft = "╡";
    };
};

}  // namespace vantrel
