#pragma once

#include <QList>
#include <QPainter>
#include <QPointF>
#include <QString>
#include <array>

/// Stand-ins for the two pictures that the program writes as characters, for desktops without a font that has
/// them. Each takes the room of two spaces. Main thread only.
namespace vantrel::pictures {

enum class Picture { folder, page };

inline constexpr std::array<char32_t, 2> codePoints{U'\U0001F4C1', U'\U0001F4C4'};

struct Place {
    Picture picture;
    qsizetype index;  ///< of the first placeholder in the text with placeholders
};

/// Where pictures stand in `text`, left to right.
QList<Place> find(const QString& text);

/// `text` with two spaces for each picture, so its indices stay the same.
QString withPlaceholders(QString text);

/// Draws in the painter's pen colour, inside a square of `size` points.
void draw(QPainter& painter, Picture picture, QPointF topLeft, double size);

}  // namespace vantrel::pictures
