#include "qt/preview/PreviewPages.h"

#ifdef VANTREL_WITH_PDF
#include <QPainter>
#include <QPdfDocument>
#include <algorithm>
#endif

namespace vantrel {

#ifdef VANTREL_WITH_PDF

namespace {

constexpr int mostPages = 20;
constexpr qsizetype mostMemory = qsizetype{64} << 20;  // bytes in all pages
constexpr qsizetype headerRange = 1024;                // bytes; how far in readers accept the header

QImage drawnPage(QPdfDocument& document, int index, const QSize& box) {
    const QSizeF points = document.pagePointSize(index);
    if (points.isEmpty()) return {};
    const QSize size = points.scaled(box, Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
    // Pages are transparent where nothing is printed.
    QImage page(size, QImage::Format_RGB32);
    if (page.isNull()) return {};
    page.fill(Qt::white);
    QPainter(&page).drawImage(0, 0, document.render(index, size));
    return page;
}

}  // namespace

bool canDrawPages(const QByteArray& beginning) {
    return beginning.first(std::min(beginning.size(), headerRange)).contains("%PDF-");
}

bool drawPages(QIODevice& file, const QSize& box, const std::stop_token& stop,
               const std::function<void(const PagesBody&)>& show) {
    QPdfDocument document;
    document.load(&file);
    if (document.status() != QPdfDocument::Status::Ready) return false;
    PagesBody body{.pages = {}, .pageCount = document.pageCount()};
    qsizetype memory = 0;
    for (int index = 0; index < std::min(body.pageCount, mostPages); ++index) {
        if (stop.stop_requested() || memory > mostMemory) break;
        const QImage page = drawnPage(document, index, box);
        if (page.isNull()) break;
        memory += page.sizeInBytes();
        body.pages.append(page);
        show(body);
    }
    return !body.pages.isEmpty();
}

#else

bool canDrawPages(const QByteArray&) {
    return false;
}

bool drawPages(QIODevice&, const QSize&, const std::stop_token&,
               const std::function<void(const PagesBody&)>&) {
    return false;
}

#endif

}  // namespace vantrel
