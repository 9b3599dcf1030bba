#include "qt/QtFace.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "qt/Pictures.h"

namespace vantrel {

namespace {

bool isPrintableAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

std::optional<double> commonAsciiWidth(const QFontMetricsF& metrics) {
    QString all;
    for (char16_t c = u' '; c <= u'~'; ++c) all += QChar(c);
    const double width = metrics.horizontalAdvance(QChar(u'M'));
    for (const QChar c : all) {
        if (metrics.horizontalAdvance(c) != width) return std::nullopt;
    }
    if (metrics.horizontalAdvance(all) != width * static_cast<double>(all.size())) return std::nullopt;
    return width;
}

QString toQString(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

}  // namespace

QFont qtFont(const Font& font) {
    QFont result;
    result.setFamilies({QString::fromStdString(font.family)});
    // Without the hint a family that has gone missing would be replaced by a proportional one.
    result.setStyleHint(QFont::Monospace, QFont::PreferAntialias);
    result.setFixedPitch(true);
    result.setPixelSize(std::max(1, static_cast<int>(std::lround(font.size))));
    result.setWeight(font.weight == FontWeight::bold ? QFont::Bold : QFont::Normal);
    result.setHintingPreference(QFont::PreferNoHinting);
    result.setKerning(false);
    return result;
}

QtFace::QtFace(const Font& font)
    : font_(qtFont(font)),
      metrics_(font_),
      cellWidth_(commonAsciiWidth(metrics_)),
      hasPictures_(
          std::ranges::all_of(pictures::codePoints, [this](char32_t c) { return metrics_.inFontUcs4(c); })) {}

double QtFace::drawnWidth(const QString& text) const {
    return metrics_.horizontalAdvance(text);
}

double QtFace::width(std::string_view utf8) const {
    if (cellWidth_ && isPrintableAscii(utf8)) return *cellWidth_ * static_cast<double>(utf8.size());
    const QString text = toQString(utf8);
    return drawnWidth(hasPictures_ ? text : pictures::withPlaceholders(text));
}

void QtFace::draw(QPainter& painter, double x, double baseline, std::string_view utf8) const {
    painter.setFont(font_);
    QString text = toQString(utf8);
    if (!hasPictures_) {
        const QList<pictures::Place> places = pictures::find(text);
        text = pictures::withPlaceholders(text);
        for (const pictures::Place& place : places) {
            const double left = x + drawnWidth(text.left(place.index));
            pictures::draw(painter, place.picture, {left, baseline - font_.pixelSize()}, font_.pixelSize());
        }
    }
    painter.drawText(QPointF(x, baseline), text);
}

bool QtFaces::Less::operator()(const Font& a, const Font& b) const {
    return std::tie(a.family, a.size, a.weight) < std::tie(b.family, b.size, b.weight);
}

const QtFace& QtFaces::face(const Font& font) {
    return faces_.try_emplace(font, font).first->second;
}

}  // namespace vantrel
