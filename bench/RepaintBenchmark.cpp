// One repaint of the whole window's content, both panels full of rows, as the raster engine does it.
//   repaint/WIDTH/HEIGHT/SCALE   in points, and device pixels per point

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>

#include "commander/OvCommanderView.h"
#include "desktop/QtDesktop.h"
#include "qt/QtCanvas.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace vantrel;

QtDesktop& desktop() {
    static auto& instance = *[] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return new QtDesktop("repaint-benchmark");
    }();
    return instance;
}

const std::string& folder() {
    static const auto& made = *[] {
        auto* temporary = new test::TemporaryFolder;
        for (int number = 0; number < 100; ++number) {
            temporary->makeFile("document number " + std::to_string(number) + ".txt", "text");
        }
        return temporary;
    }();
    return made.path();
}

void repaint(benchmark::State& state) {
    const QSize size(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const Rect frame{0, 0, static_cast<double>(size.width()), static_cast<double>(size.height())};
    const auto commander = OvCommanderView::make(desktop().ports(), desktop().engine(), frame);
    commander->leftPanel().setCurrentPath(folder());
    commander->rightPanel().setCurrentPath(folder());
    const auto scale = static_cast<int>(state.range(2));
    QImage image(size * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    QtFaces faces;
    for (auto _ : state) {
        QPainter painter(&image);
        QtCanvas canvas(painter, faces);
        commander->drawTree(canvas);
    }
}
BENCHMARK(repaint)
    ->Args({800, 500, 1})
    ->Args({1100, 720, 1})
    ->Args({1100, 720, 2})
    ->Args({2560, 1400, 1})
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
