#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QPainter>
#include <vector>

#include "platform/View.h"
#include "qt/QtApplication.h"
#include "qt/QtCanvas.h"

namespace vantrel::test {

/// The one application of this test program.
QtApplication& application();

/// Runs its loop. False when the loop does not end by itself within a minute.
bool loopEnds();

inline const Font mono{"DejaVu Sans Mono", 13};
inline constexpr Color black{0, 0, 0};
inline constexpr Color white{1, 1, 1};

/// A white image to paint on. `width` and `height` are points, pixel positions are device pixels.
class Surface {
public:
    Surface(int width, int height, double ratio);

    QtCanvas& canvas() { return canvas_; }
    QPainter& painter() { return painter_; }
    const QImage& image() const { return image_; }

    QRgb pixel(int x, int y) const { return image_.pixel(x, y); }
    /// Positions along a row or a column where something other than white is.
    std::vector<int> inkInRow(int y) const;
    std::vector<int> inkInColumn(int x) const;
    /// The smallest rectangle around everything painted.
    QRect ink() const;

private:
    QImage image_;
    QPainter painter_;
    QtFaces faces_;
    QtCanvas canvas_;
};

/// Keeps the events that it gets.
class RecordingView final : public View {
public:
    void draw(Canvas& canvas) override {
        ++draws;
        canvas.fill(bounds(), black);
    }
    EventResult keyDown(const KeyEvent& event) override {
        keys.push_back(event);
        return answer;
    }
    EventResult mouseDown(const MouseEvent& event) override {
        clicks.push_back(event);
        return answer;
    }
    EventResult scrollWheel(const ScrollEvent& event) override {
        scrolls.push_back(event);
        return answer;
    }

    int draws = 0;
    EventResult answer = EventResult::handled;
    std::vector<KeyEvent> keys;
    std::vector<MouseEvent> clicks;
    std::vector<ScrollEvent> scrolls;
};

/// Serves every event that is due, deferred destruction included.
inline void serveEvents() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace vantrel::test
