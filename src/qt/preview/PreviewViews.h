#pragma once

#include <QPixmap>
#include <QStringList>
#include <QWidget>

#include "qt/preview/PreviewContent.h"

namespace vantrel {

/// A picture in the middle, as large as it fits but never enlarged. Main thread only.
class ImageView final : public QWidget {
public:
    using QWidget::QWidget;

    void setImage(const QImage& image);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage image_;
    QPixmap scaled_;  ///< image_ at the present size
};

/// Pages one below the other, as wide as there is room but never enlarged; meant for a scroll area.
class PagesView final : public QWidget {
public:
    explicit PagesView(QWidget* parent = nullptr);

    void setPages(const QList<QImage>& pages);
    const QList<QImage>& pages() const { return pages_; }

    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSize shownSize(const QImage& page, int width) const;

    QList<QImage> pages_;
};

/// An icon and lines of text below it, the first of them the largest. Any characters, any length.
class FactsView final : public QWidget {
public:
    using QWidget::QWidget;

    void setFacts(const PreviewFacts& facts, const QStringList& lines);

    const QStringList& lines() const { return lines_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    PreviewFacts facts_;
    QStringList lines_;
};

}  // namespace vantrel
