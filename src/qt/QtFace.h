#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QString>
#include <map>
#include <optional>
#include <string_view>

#include "platform/Font.h"

namespace vantrel {

/// The QFont of `font`: unhinted, antialiased, no kerning, one point to a device-independent pixel.
QFont qtFont(const Font& font);

/// A font ready to measure and draw with. Main thread only; lengths in points.
class QtFace {
public:
    explicit QtFace(const Font& font);

    const QFont& font() const { return font_; }
    double ascent() const { return metrics_.ascent(); }
    double height() const { return metrics_.height(); }

    /// Advance width of valid UTF-8.
    double width(std::string_view utf8) const;

    /// Draws with the painter's pen, the text's left end at `x`.
    void draw(QPainter& painter, double x, double baseline, std::string_view utf8) const;

private:
    double drawnWidth(const QString& text) const;

    QFont font_;
    QFontMetricsF metrics_;
    std::optional<double> cellWidth_;  ///< of every ASCII character, if all have the same
    bool hasPictures_ = true;          ///< whether some installed font holds the folder and the page
};

/// Faces made once and kept. Not shared between threads.
class QtFaces {
public:
    const QtFace& face(const Font& font);

private:
    struct Less {
        bool operator()(const Font& a, const Font& b) const;
    };
    std::map<Font, QtFace, Less> faces_;
};

}  // namespace vantrel
