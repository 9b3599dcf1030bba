#include "qt/QtCanvas.h"

#include <gtest/gtest.h>

#include <numeric>

#include "qt/QtTestSupport.h"

namespace vantrel::test {

namespace {

std::vector<int> range(int first, int end) {
    std::vector<int> numbers(end - first);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

/// The double frame of a box of 60 by 40 points.
void strokeDoubleFrame(Surface& surface) {
    const Rect box{0, 0, 60, 40};
    const Rect outlines[] = {box.inset(2), box.inset(4)};
    surface.canvas().stroke(outlines, 1.5, black);
}

}  // namespace

TEST(QtCanvas, coloursAreTheNearestOnesOfEightBits) {
    Surface surface(4, 4, 1);
    surface.canvas().fill({0, 0, 4, 4}, {0.67, 0.33, 0.55});
    EXPECT_EQ(surface.pixel(1, 1), qRgb(171, 84, 140));
}

TEST(QtCanvas, aTranslucentFillLetsTheGroundShowThrough) {
    Surface surface(4, 4, 1);
    surface.canvas().fill({0, 0, 4, 4}, black.withAlpha(0.4));
    EXPECT_EQ(surface.pixel(1, 1), qRgb(153, 153, 153));
}

TEST(QtCanvas, aFillCoversExactlyItsPixels) {
    Surface surface(20, 20, 2);
    surface.canvas().fill({3, 5, 4, 6}, black);
    EXPECT_EQ(surface.ink(), QRect(6, 10, 8, 12));
}

TEST(QtCanvas, neighbouringFillsNeitherOverlapNorLeaveASeamAtFractionalEdges) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        Surface surface(40, 4, ratio);
        const double cuts[] = {0, 7.3, 10.5, 19.9, 25.25, 40};
        for (int i = 0; i + 1 < 6; ++i)
            surface.canvas().fill({cuts[i], 0, cuts[i + 1] - cuts[i], 4}, black.withAlpha(0.4));
        for (int x = 0; x < surface.image().width(); ++x)
            EXPECT_EQ(surface.pixel(x, 1), qRgb(153, 153, 153)) << "column " << x << " at " << ratio;
    }
}

TEST(QtCanvas, anEmptyOrInsideOutAreaPaintsNothing) {
    Surface surface(10, 10, 1);
    surface.canvas().fill({2, 2, 0, 5}, black);
    surface.canvas().fill({5, 5, -3, -3}, black);
    const Rect insideOut[] = {Rect{0, 0, 3, 3}.inset(4)};
    surface.canvas().stroke(insideOut, 1.5, black);
    EXPECT_TRUE(surface.ink().isEmpty());
}

TEST(QtCanvas, theDoubleFrameIsTwoSinglePixelLinesAtRatioOne) {
    Surface surface(60, 40, 1);
    strokeDoubleFrame(surface);
    EXPECT_EQ(surface.inkInRow(20), (std::vector{2, 4, 55, 57}));
    EXPECT_EQ(surface.inkInColumn(30), (std::vector{2, 4, 35, 37}));
}

TEST(QtCanvas, theDoubleFrameIsTwoSinglePixelLinesAtRatioOneAndAQuarter) {
    Surface surface(60, 40, 1.25);
    strokeDoubleFrame(surface);
    EXPECT_EQ(surface.inkInRow(25), (std::vector{2, 5, 69, 72}));
    EXPECT_EQ(surface.inkInColumn(37), (std::vector{2, 5, 44, 47}));
}

TEST(QtCanvas, theDoubleFrameIsTwoEvenLinesOfTwoPixelsAtRatioOneAndAHalf) {
    Surface surface(60, 40, 1.5);
    strokeDoubleFrame(surface);
    EXPECT_EQ(surface.inkInRow(30), (std::vector{2, 3, 5, 6, 83, 84, 86, 87}));
    EXPECT_EQ(surface.inkInColumn(45), (std::vector{2, 3, 5, 6, 53, 54, 56, 57}));
}

TEST(QtCanvas, theDoubleFrameIsTwoEvenLinesOfThreePixelsAtRatioTwo) {
    Surface surface(60, 40, 2);
    strokeDoubleFrame(surface);
    EXPECT_EQ(surface.inkInRow(40), (std::vector{3, 4, 5, 7, 8, 9, 110, 111, 112, 114, 115, 116}));
    EXPECT_EQ(surface.inkInColumn(60), (std::vector{3, 4, 5, 7, 8, 9, 70, 71, 72, 74, 75, 76}));
}

TEST(QtCanvas, aFrameIsAsCrispWhereItsAreaStartsBetweenTwoPixels) {
    Surface surface(80, 40, 1.5);
    surface.canvas().pushArea({11, 0, 60, 40});
    strokeDoubleFrame(surface);
    surface.canvas().popArea();
    // The area starts at device column 16.5.
    EXPECT_EQ(surface.inkInRow(30), (std::vector{19, 20, 22, 23, 99, 100, 102, 103}));
}

TEST(QtCanvas, theColourOfAStrokeIsNotMixedAtItsEdges) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        Surface surface(60, 40, ratio);
        strokeDoubleFrame(surface);
        for (int y = 0; y < surface.image().height(); ++y) {
            for (const int x : surface.inkInRow(y)) EXPECT_EQ(surface.pixel(x, y), qRgb(0, 0, 0));
        }
    }
}

TEST(QtCanvas, aTranslucentStrokeIsEvenWhereItsLinesCross) {
    Surface surface(20, 20, 1);
    const Rect crossing[] = {{2, 2, 10, 10}, {6, 6, 10, 10}};
    surface.canvas().stroke(crossing, 1, black.withAlpha(0.4));
    EXPECT_EQ(surface.pixel(2, 2), qRgb(153, 153, 153)) << "a corner";
    EXPECT_EQ(surface.pixel(11, 6), qRgb(153, 153, 153)) << "a crossing of the two";
}

TEST(QtCanvas, aRectangleNarrowerThanItsStrokeIsFilledOnce) {
    Surface surface(20, 20, 1);
    const Rect thin[] = {{5, 5, 1, 10}};
    surface.canvas().stroke(thin, 3, black.withAlpha(0.4));
    EXPECT_EQ(surface.pixel(5, 10), qRgb(153, 153, 153));
}

TEST(QtCanvas, aLineIsOnePixelAtRatioOneAndStartsAndEndsWithItsPoints) {
    Surface surface(40, 40, 1);
    surface.canvas().line({4, 10}, {36, 10}, 1, black);
    EXPECT_EQ(surface.ink(), QRect(4, 10, 32, 1));
    EXPECT_EQ(surface.inkInRow(10), range(4, 36));
}

TEST(QtCanvas, aVerticalLineMayBeGivenFromTheBottomUp) {
    Surface surface(40, 40, 1);
    surface.canvas().line({10, 30}, {10, 4}, 1, black);
    EXPECT_EQ(surface.ink(), QRect(10, 4, 1, 26));
}

TEST(QtCanvas, aLineOfOnePointIsAsManyWholePixelsAsFit) {
    Surface half(40, 40, 1.5);
    half.canvas().line({4, 10}, {36, 10}, 1, black);
    EXPECT_EQ(half.ink(), QRect(6, 15, 48, 1));
    Surface twice(40, 40, 2);
    twice.canvas().line({4, 10}, {36, 10}, 1, black);
    EXPECT_EQ(twice.ink(), QRect(8, 19, 64, 2));
}

TEST(QtCanvas, anAreaMovesTheOriginAndCutsOffWhatLeavesIt) {
    Surface surface(40, 40, 1);
    surface.canvas().pushArea({10, 12, 20, 8});
    surface.canvas().fill({-5, -5, 100, 100}, black);
    surface.canvas().popArea();
    EXPECT_EQ(surface.ink(), QRect(10, 12, 20, 8));
}

TEST(QtCanvas, anInnerAreaIsRelativeToTheOuterOneAndCutByBoth) {
    Surface surface(40, 40, 1);
    surface.canvas().pushArea({10, 10, 10, 10});
    surface.canvas().pushArea({5, 5, 20, 3});
    surface.canvas().fill({0, 0, 20, 20}, black);
    surface.canvas().popArea();
    surface.canvas().fill({0, 0, 1, 1}, black);
    surface.canvas().popArea();
    surface.canvas().fill({0, 0, 1, 1}, black);
    EXPECT_EQ(surface.inkInRow(0), (std::vector{0}));
    EXPECT_EQ(surface.inkInRow(10), (std::vector{10}));
    EXPECT_EQ(surface.inkInRow(15), range(15, 20));
    EXPECT_EQ(surface.inkInColumn(17), range(15, 18));
}

TEST(QtCanvas, thePainterComesBackAsItWas) {
    QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setPen(Qt::red);
    QtFaces faces;
    {
        QtCanvas canvas(painter, faces);
        canvas.text("x", {0, 0, 10, 10}, mono, black);
        canvas.pushArea({1, 1, 5, 5});
        canvas.popArea();
    }
    EXPECT_EQ(painter.pen().color(), QColor(Qt::red));
    EXPECT_TRUE(painter.worldTransform().isIdentity());
    EXPECT_FALSE(painter.hasClipping());
}

}  // namespace vantrel::test
