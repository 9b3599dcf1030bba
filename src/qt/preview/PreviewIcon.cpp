#include "qt/preview/PreviewIcon.h"

#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace vantrel {

namespace {

// Drawn in a square of 128 units.
constexpr double unitSquare = 128;
constexpr QRectF folderBack{8, 22, 112, 86};
constexpr QRectF folderTab{8, 14, 46, 30};
constexpr QRectF folderFront{8, 40, 112, 72};
constexpr double folderCorner = 6;
constexpr QRectF page{24, 6, 80, 116};
constexpr double fold = 26;
constexpr double firstTextLine = 52;
constexpr double textLineStep = 14;
constexpr int textLines = 5;

const QColor folderDark(0x1c, 0x5f, 0xa8);
const QColor folderLight(0x4b, 0x97, 0xe0);
const QColor paper(0xfa, 0xfa, 0xfa);
const QColor paperEdge(0x8a, 0x8f, 0x96);
const QColor paperFold(0xd5, 0xd9, 0xde);
const QColor print(0xb4, 0xba, 0xc2);

void drawFolder(QPainter& painter) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(folderDark);
    painter.drawRoundedRect(folderTab, folderCorner, folderCorner);
    painter.drawRoundedRect(folderBack, folderCorner, folderCorner);
    painter.setBrush(folderLight);
    painter.drawRoundedRect(folderFront, folderCorner, folderCorner);
}

void drawPage(QPainter& painter) {
    const QPointF foldStart(page.right() - fold, page.top());
    const QPointF foldEnd(page.right(), page.top() + fold);
    const QPolygonF outline{page.topLeft(), foldStart, foldEnd, page.bottomRight(), page.bottomLeft()};
    painter.setPen(QPen(paperEdge, 2, Qt::SolidLine, Qt::SquareCap, Qt::RoundJoin));
    painter.setBrush(paper);
    painter.drawPolygon(outline);
    painter.setBrush(paperFold);
    painter.drawPolygon(QPolygonF{foldStart, QPointF(foldStart.x(), foldEnd.y()), foldEnd});
    for (int line = 0; line < textLines; ++line) {
        const double length = page.width() - (line + 1 == textLines ? 48 : 24);
        painter.fillRect(QRectF(page.left() + 12, firstTextLine + line * textLineStep, length, 5), print);
    }
}

QPixmap drawnIcon(bool isFolder, int size, double ratio) {
    const int pixels = static_cast<int>(std::lround(size * ratio));
    QPixmap icon(pixels, pixels);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels / unitSquare, pixels / unitSquare);
    if (isFolder) {
        drawFolder(painter);
    } else {
        drawPage(painter);
    }
    painter.end();
    icon.setDevicePixelRatio(ratio);
    return icon;
}

}  // namespace

QPixmap previewIcon(const PreviewFacts& facts, int size, double ratio) {
    for (const QString& name : {facts.iconName, facts.genericIconName}) {
        if (name.isEmpty() || !QIcon::hasThemeIcon(name)) continue;
        QPixmap icon = QIcon::fromTheme(name).pixmap(QSize(size, size), ratio);
        if (!icon.isNull()) return icon;
    }
    return drawnIcon(facts.isFolder, size, ratio);
}

}  // namespace vantrel
