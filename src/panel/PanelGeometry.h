#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/Geometry.h"

/// Where the parts of a panel stand, in points of its own coordinates. Pure functions and constants; any
/// thread.
///
/// Painting and clicking do not share their bands, and that is meant. Clicks count bars of 24 points and
/// whole rows between them, and so does the number of rows. What is painted leaves air around its rules: the
/// titles end at 50, the rows begin at 52, and the last one may reach 4 points into the bar below. So a click
/// on the last 4 points of a painted row takes the row below it. One set of numbers for both would move
/// either every stroke or every click.
namespace vantrel::panel {

inline constexpr double rowHeight = 20;

// What a click hits, and how many rows there are.
inline constexpr double topBarHeight = 24;
inline constexpr double headerHeight = 24;
inline constexpr double bottomBarHeight = 24;

// What is painted, from the top edge or, where it says so, from the bottom edge upwards.
inline constexpr double titleTop = 4;
inline constexpr double titlePatchHeight = 24;
inline constexpr double headerTop = 26;
inline constexpr double headerTextTop = 29;
inline constexpr double headerRuleY = 50;
inline constexpr double rowsTop = 52;
inline constexpr double listEndFromBottom = 28;
inline constexpr double footerRuleFromBottom = 26;
inline constexpr double statusFromBottom = 23;

// Of the boxes of texts. A box cuts its text off at the right only.
inline constexpr double textHeight = 24;
inline constexpr double rowTextInset = 2;  ///< from the top of a row

// Lines.
inline constexpr double outerFrameInset = 2;
inline constexpr double innerFrameInset = 4;
inline constexpr double frameLineWidth = 1.5;
inline constexpr double ruleWidth = 1;

// Along a line.
inline constexpr double textMargin = 10;  ///< where names begin, and nothing in the bars before it
inline constexpr double titlePatchMargin = 6;
inline constexpr double selectionInset = 6;
inline constexpr double titleInset = 5;  ///< of a column's title, from its separator
inline constexpr double sizeTitleWidth = 77;
inline constexpr double dateTitleWidth = 87;
inline constexpr double timeTitleWidth = 37;
inline constexpr double nameGap = 4;    ///< between a name and the fixed columns
inline constexpr double sizeInset = 4;  ///< of a size too wide for its column, from its separator
inline constexpr double sizeGap = 8;    ///< between a size and the next separator
inline constexpr double dateInset = 6;  ///< of a date or a time, from its separator
inline constexpr double dateTextWidth = 87;
inline constexpr double timeTextWidth = 45;
inline constexpr double statusShare = 0.6;  ///< of the panel's width, for the text on the left
inline constexpr double countMargin = 14;   ///< between the text on the right and the panel's edge
inline constexpr double countSlack = 5;

/// The columns of a panel of that width: name, size, date and time.
struct Columns {
    static constexpr std::size_t count = 4;
    static constexpr double fixedWidth = 245;  ///< of size, date and time together
    static constexpr double sizeWidth = 85;
    static constexpr double dateWidth = 95;
    static constexpr double separatorInset = 6;

    explicit Columns(double width)
        : end(width),
          start(width - fixedWidth),
          size(start + separatorInset),
          date(size + sizeWidth),
          time(date + dateWidth) {}

    double end;
    double start;  ///< the name column ends here
    double size;   ///< x of the separator before each column
    double date;
    double time;

    std::array<double, 3> separators() const { return {size, date, time}; }
    double left(std::size_t column) const { return std::array{0.0, size, date, time}[column]; }
    double right(std::size_t column) const { return std::array{size, date, time, end}[column]; }

    /// The column whose title a click at `x` hits. The zones begin where the fixed columns do, a little left
    /// of the separators.
    std::size_t hitBy(double x) const;
};

/// The painted top of a row that stands `place` rows below the first one in sight.
constexpr double rowTop(std::int64_t place) {
    return rowsTop + static_cast<double>(place) * rowHeight;
}

/// How many rows a panel of that height shows; at least one.
std::int64_t rowsThatFit(double height);

/// Whether a click at `y` hits the titles.
bool isInHeader(double y);

/// How many rows below the first one in sight a click at `y` hits; nothing in the bars.
std::optional<std::int64_t> placeHitBy(double y, double height);

}  // namespace vantrel::panel
