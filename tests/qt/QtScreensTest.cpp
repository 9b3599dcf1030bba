#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWindow>
#include <array>

#include "qt/QtTestSupport.h"
#include "qt/QtWindow.h"

// The window on screens of several ratios of device pixels to points, see screens.json.

namespace vantrel::test {

namespace {

constexpr QRgb blue = qRgb(0, 0, 255);
constexpr QRgb yellow = qRgb(255, 255, 0);

/// A yellow double frame around everything.
class FrameView final : public View {
public:
    void draw(Canvas& canvas) override {
        const Rect outlines[] = {bounds().inset(2), bounds().inset(4)};
        canvas.stroke(outlines, 1.5, {1, 1, 0});
    }
};

/// Lengths of the runs of equal pixels, blue ones in brackets: "[2]1[5]".
template <class PixelAt>
std::string runs(int begin, int end, PixelAt pixelAt) {
    std::string text;
    for (int from = begin, to = begin; from < end; from = to) {
        const QRgb color = pixelAt(from);
        while (to < end && pixelAt(to) == color) ++to;
        const std::string length = std::to_string(to - from);
        text += color == blue ? "[" + length + "]" : color == yellow ? length : "(mixed)";
    }
    return text;
}

std::string middleRow(const QImage& image) {
    return runs(0, image.width(), [&](int x) { return image.pixel(x, image.height() / 2); });
}
std::string middleColumn(const QImage& image) {
    return runs(0, image.height(), [&](int y) { return image.pixel(image.width() / 2, y); });
}

class QtScreens : public testing::Test {
protected:
    void SetUp() override {
        if (QGuiApplication::screens().size() < 4)
            GTEST_SKIP() << "the platform has not the screens of screens.json";
        window.setContentView(std::make_shared<FrameView>());
        window.centerAndShow();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    /// Moves the window to the screen with that ratio.
    void moveTo(double ratio) {
        for (QScreen* const screen : QGuiApplication::screens()) {
            if (screen->name().toDouble() == ratio) window.windowHandle()->setScreen(screen);
        }
        serveEvents();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        // How large a window is on another screen is for the window system to say, and this one keeps now the
        // points, now the pixels, depending on which of its events comes first.
        ASSERT_TRUE(QTest::qWaitFor([this] {
            const QSize missing = QSize(304, 204) - window.content().size();
            if (!missing.isNull()) window.resize(window.size() + missing);
            return missing.isNull();
        }));
        ASSERT_EQ(window.devicePixelRatioF(), ratio);
    }

    QImage content() { return window.content().grab().toImage(); }

    QtWindow window{{"Frame", {304, 204}, {100, 100}, {0, 0, 1}}};
};

}  // namespace

TEST_F(QtScreens, theFrameIsEvenOnAllSidesOnEveryScreenThatTheWindowMovesTo) {
    struct Expectation {
        double ratio;
        const char* row;
        const char* column;
    };
    const std::array<Expectation, 6> expectations{{
        {1, "[2]1[1]1[294]1[1]1[2]", "[2]1[1]1[194]1[1]1[2]"},
        {1.25, "[2]1[2]1[368]1[2]1[2]", "[2]1[2]1[243]1[2]1[2]"},
        {1.5, "[2]2[1]2[442]2[1]2[2]", "[2]2[1]2[292]2[1]2[2]"},
        {2, "[3]3[1]3[588]3[1]3[3]", "[3]3[1]3[388]3[1]3[3]"},
        {1.25, "[2]1[2]1[368]1[2]1[2]", "[2]1[2]1[243]1[2]1[2]"},
        {1, "[2]1[1]1[294]1[1]1[2]", "[2]1[1]1[194]1[1]1[2]"},
    }};
    for (const Expectation& expected : expectations) {
        moveTo(expected.ratio);
        const QImage shown = content();
        EXPECT_EQ(middleRow(shown), expected.row) << "at " << expected.ratio;
        EXPECT_EQ(middleColumn(shown), expected.column) << "at " << expected.ratio;
    }
}

TEST_F(QtScreens, thePointsOfTheContentStayTheSame) {
    for (const double ratio : {1.25, 1.5, 2.0, 1.0}) {
        moveTo(ratio);
        EXPECT_EQ(window.content().root()->frame(), (Rect{0, 0, 304, 204})) << "at " << ratio;
        EXPECT_EQ(content().size(), QSize(304, 204) * ratio) << "at " << ratio;
    }
}

}  // namespace vantrel::test
