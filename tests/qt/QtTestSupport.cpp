#include "qt/QtTestSupport.h"

#include <QTimer>
#include <cmath>

namespace vantrel::test {

namespace {

QImage whiteImage(int width, int height, double ratio) {
    QImage image(static_cast<int>(std::lround(width * ratio)), static_cast<int>(std::lround(height * ratio)),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
}

constexpr QRgb paper = 0xffffffff;

}  // namespace

bool loopEnds() {
    bool isByItself = true;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, [&] {
        isByItself = false;
        QCoreApplication::exit(1);
    });
    limit.start(60'000);
    application().run();
    return isByItself;
}

Surface::Surface(int width, int height, double ratio)
    : image_(whiteImage(width, height, ratio)), painter_(&image_), canvas_(painter_, faces_) {}

std::vector<int> Surface::inkInRow(int y) const {
    std::vector<int> found;
    for (int x = 0; x < image_.width(); ++x) {
        if (pixel(x, y) != paper) found.push_back(x);
    }
    return found;
}

std::vector<int> Surface::inkInColumn(int x) const {
    std::vector<int> found;
    for (int y = 0; y < image_.height(); ++y) {
        if (pixel(x, y) != paper) found.push_back(y);
    }
    return found;
}

QRect Surface::ink() const {
    QRect found;
    for (int y = 0; y < image_.height(); ++y) {
        for (const int x : inkInRow(y)) found |= QRect(x, y, 1, 1);
    }
    return found;
}

}  // namespace vantrel::test
