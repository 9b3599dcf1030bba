#include "qt/Pictures.h"

namespace vantrel::pictures {

namespace {

/// A part of a picture in fractions of its square.
using Part = QRectF;

constexpr std::array folderParts{Part{0.08, 0.30, 0.38, 0.12}, Part{0.08, 0.38, 0.84, 0.54}};
constexpr std::array pageParts{Part{0.20, 0.22, 0.60, 0.08}, Part{0.20, 0.84, 0.60, 0.08},
                               Part{0.20, 0.22, 0.08, 0.70}, Part{0.72, 0.22, 0.08, 0.70},
                               Part{0.36, 0.42, 0.28, 0.08}, Part{0.36, 0.60, 0.28, 0.08}};

QString character(Picture picture) {
    return QString::fromUcs4(&codePoints[picture == Picture::folder ? 0 : 1], 1);
}

}  // namespace

QList<Place> find(const QString& text) {
    QList<Place> places;
    for (qsizetype index = 0; index < text.size(); ++index) {
        for (const Picture picture : {Picture::folder, Picture::page}) {
            if (QStringView(text).mid(index).startsWith(character(picture))) places.append({picture, index});
        }
    }
    return places;
}

QString withPlaceholders(QString text) {
    for (const Picture picture : {Picture::folder, Picture::page}) {
        const QString sought = character(picture);
        static_assert(codePoints[0] > 0xFFFF && codePoints[1] > 0xFFFF, "two UTF-16 units, two spaces");
        text.replace(sought, QStringLiteral("  "));
    }
    return text;
}

void draw(QPainter& painter, Picture picture, QPointF topLeft, double size) {
    const auto paint = [&](const Part& part) {
        painter.fillRect(QRectF(topLeft.x() + part.x() * size, topLeft.y() + part.y() * size,
                                part.width() * size, part.height() * size),
                         painter.pen().color());
    };
    if (picture == Picture::folder) {
        for (const Part& part : folderParts) paint(part);
    } else {
        for (const Part& part : pageParts) paint(part);
    }
}

}  // namespace vantrel::pictures
