#include "qt/preview/PreviewViews.h"

#include <QFontInfo>
#include <QPaintEvent>
#include <QPainter>
#include <QSizePolicy>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "qt/preview/PreviewIcon.h"

namespace vantrel {

namespace {

constexpr int margin = 16;     // points
constexpr int pageGap = 12;    // points
constexpr int iconSize = 128;  // points
constexpr int lineGap = 4;     // points
constexpr double headlineScale = 1.3;
constexpr int headlineMostLines = 4;

QSize inPoints(const QSize& pixels, double ratio) {
    return {static_cast<int>(std::ceil(pixels.width() / ratio)),
            static_cast<int>(std::ceil(pixels.height() / ratio))};
}

}  // namespace

void ImageView::setImage(const QImage& image) {
    image_ = image;
    scaled_ = {};
    update();
}

void ImageView::paintEvent(QPaintEvent*) {
    if (image_.isNull()) return;
    const double ratio = devicePixelRatioF();
    const QSize room = size() * ratio;
    const bool fits = image_.width() <= room.width() && image_.height() <= room.height();
    const QSize shown =
        fits ? image_.size() : image_.size().scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
    if (scaled_.size() != shown) {
        scaled_ = QPixmap::fromImage(
            fits ? image_ : image_.scaled(shown, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    scaled_.setDevicePixelRatio(ratio);
    const QPoint topLeft((room.width() - shown.width()) / 2, (room.height() - shown.height()) / 2);  // pixels
    QPainter(this).drawPixmap(QPointF(topLeft) / ratio, scaled_);
}

PagesView::PagesView(QWidget* parent) : QWidget(parent) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void PagesView::setPages(const QList<QImage>& pages) {
    pages_ = pages;
    updateGeometry();
    update();
}

QSize PagesView::shownSize(const QImage& page, int width) const {
    const QSize natural = inPoints(page.size(), devicePixelRatioF());
    const int room = std::max(1, width - 2 * margin);
    if (natural.width() <= room) return natural;
    return natural.scaled(room, natural.height(), Qt::KeepAspectRatio).expandedTo({1, 1});
}

int PagesView::heightForWidth(int width) const {
    int height = margin;
    for (const QImage& page : pages_) height += shownSize(page, width).height() + pageGap;
    return height - pageGap + margin;
}

void PagesView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    int y = margin;
    for (const QImage& page : pages_) {
        const QSize size = shownSize(page, width());
        const QRect area(QPoint((width() - size.width()) / 2, y), size);
        if (area.intersects(event->rect())) painter.drawImage(area, page);
        y += size.height() + pageGap;
    }
}

void FactsView::setFacts(const PreviewFacts& facts, const QStringList& lines) {
    facts_ = facts;
    lines_ = lines;
    update();
}

void FactsView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QFont headline = font();
    headline.setPointSizeF(QFontInfo(headline).pointSizeF() * headlineScale);
    headline.setBold(true);
    const QFontMetrics headlineMetrics(headline);
    const QRect room = rect().adjusted(margin, 0, -margin, 0);
    constexpr int flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWrapAnywhere;

    // A name of hundreds of characters wraps, but leaves room for the rest.
    const QString name = lines_.value(0);
    const QRect nameRoom(0, 0, room.width(), headlineMetrics.lineSpacing() * headlineMostLines);
    const int nameHeight =
        std::min(headlineMetrics.boundingRect(nameRoom, flags, name).height(), nameRoom.height());
    const int lineHeight = fontMetrics().lineSpacing() + lineGap;
    const auto others = static_cast<int>(std::max<qsizetype>(0, lines_.size() - 1));
    int y = (height() - iconSize - 2 * margin - nameHeight - others * lineHeight) / 2;

    // In the middle of its place, since a theme may have only smaller ones.
    style()->drawItemPixmap(&painter, QRect((width() - iconSize) / 2, y, iconSize, iconSize), Qt::AlignCenter,
                            previewIcon(facts_, iconSize, devicePixelRatioF()));
    y += iconSize + margin;
    painter.setFont(headline);
    painter.drawText(QRect(room.left(), y, room.width(), nameHeight), flags, name);
    y += nameHeight + margin;
    painter.setFont(font());
    for (int line = 1; line <= others; ++line, y += lineHeight) {
        painter.drawText(QRect(room.left(), y, room.width(), lineHeight), Qt::AlignHCenter | Qt::AlignTop,
                         fontMetrics().elidedText(lines_[line], Qt::ElideMiddle, room.width()));
    }
}

}  // namespace vantrel
