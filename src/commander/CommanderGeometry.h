#pragma once

#include <cmath>
#include <cstddef>

#include "platform/Geometry.h"

/// Where the commander has its panels and bars, in points of its own coordinates. `view` is always its
/// bounds.
namespace vantrel::commander {

// The bands, from top to bottom; the panels have what is left between the first and the second.
inline constexpr double menuBarHeight = 24;
inline constexpr double promptBarHeight = 22;
inline constexpr double fnBarHeight = 26;
inline constexpr double gapBetweenPanels = 2;

// Menu bar.
inline constexpr double menuMargin = 16;
inline constexpr double menuTextTop = 3;
inline constexpr double menuItemGap = 32;

// Prompt line.
inline constexpr double promptMargin = 8;
inline constexpr double promptTextTop = 2;

// Function keys. A cell is clicked exactly where it is painted; between two cells there is nothing to click.
inline constexpr double fnBarMargin = 5;
inline constexpr double fnCellGap = 4;
inline constexpr double fnCellTop = 2;
inline constexpr double fnCellHeight = 22;
inline constexpr double numberBoxWidth = 16;
inline constexpr double wideNumberBoxWidth = 22;  // for two digits

constexpr Rect menuBar(const Rect& view) {
    return {0, 0, view.width, menuBarHeight};
}

inline Rect leftPanel(const Rect& view) {
    const double height = view.height - menuBarHeight - promptBarHeight - fnBarHeight;
    return {0, menuBarHeight, std::floor((view.width - gapBetweenPanels) * 0.5), height};
}

/// An odd point goes to the right panel.
inline Rect rightPanel(const Rect& view) {
    const Rect left = leftPanel(view);
    const double x = left.width + gapBetweenPanels;
    return {x, left.y, view.width - x, left.height};
}

constexpr Rect promptBar(const Rect& view) {
    return {0, view.height - fnBarHeight - promptBarHeight, view.width, promptBarHeight};
}

/// As high as the bar although it begins lower: its last two points lie in the empty strip above the function
/// keys, where a tall font may run out.
constexpr Rect promptText(const Rect& view) {
    const Rect bar = promptBar(view);
    return {promptMargin, bar.y + promptTextTop, bar.width - 2 * promptMargin, bar.height};
}

constexpr Rect fnCell(const Rect& view, std::size_t index, std::size_t count) {
    const double pitch = (view.width - 2 * fnBarMargin) / static_cast<double>(count);
    return {pitch * static_cast<double>(index) + fnBarMargin, view.height - fnBarHeight + fnCellTop,
            pitch - fnCellGap, fnCellHeight};
}

constexpr Rect fnNumberBox(const Rect& cell, std::size_t digits) {
    return {cell.x, cell.y, digits >= 2 ? wideNumberBoxWidth : numberBoxWidth, cell.height};
}

constexpr Rect fnLabelBox(const Rect& cell, const Rect& numberBox) {
    return {numberBox.maxX(), cell.y, cell.width - numberBox.width, cell.height};
}

}  // namespace vantrel::commander
