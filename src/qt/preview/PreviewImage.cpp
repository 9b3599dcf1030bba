#include "qt/preview/PreviewImage.h"

#include <QImageIOHandler>
#include <QImageReader>

namespace vantrel {

namespace {

bool liesOnItsSide(const QImageReader& reader) {
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

qint64 pixelsIn(const QSize& size) {
    return qint64{size.width()} * size.height();
}

QSize fitting(const QSize& size, const QSize& box) {
    if (size.width() <= box.width() && size.height() <= box.height()) return size;
    return size.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
}

}  // namespace

std::optional<ImageBody> decodeImage(StoppableFile& file, const QSize& box) {
    if (file.size() > largestImageFile) return std::nullopt;
    QImageReader::setAllocationLimit(imageAllocationLimit);
    QImageReader reader(&file);
    if (!reader.canRead()) return std::nullopt;
    if (file.isStopped()) return std::nullopt;
    QSize fullSize = reader.size();
    // libpng prints a message when its data ends early, which nobody can prevent, so a picture is read to its
    // end - but not one of so many pixels that a few bytes would keep it busy for minutes.
    if (reader.format() == "png" && pixelsIn(fullSize) <= mostPixelsReadOn) file.ignoreStop();
    reader.setAutoTransform(true);
    const bool isTurned = liesOnItsSide(reader);
    // The reader scales before it turns.
    if (fullSize.isValid()) reader.setScaledSize(fitting(fullSize, isTurned ? box.transposed() : box));
    QImage image = reader.read();
    if (image.isNull()) return std::nullopt;
    if (!fullSize.isValid()) {
        fullSize = image.size();
        image = image.scaled(fitting(fullSize, box), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    } else if (isTurned) {
        fullSize.transpose();
    }
    return ImageBody{.image = image, .fullSize = fullSize};
}

}  // namespace vantrel
