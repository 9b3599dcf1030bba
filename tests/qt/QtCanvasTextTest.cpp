#include <gtest/gtest.h>

#include "qt/Pictures.h"
#include "qt/QtCanvas.h"
#include "qt/QtTestSupport.h"

namespace vantrel::test {

namespace {

QImage drawn(std::string_view text, const Rect& area, double ratio = 1) {
    Surface surface(200, 40, ratio);
    surface.canvas().text(text, area, mono, black);
    return surface.image();
}

bool hasColour(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.red() != pixel.green() || pixel.green() != pixel.blue()) return true;
        }
    }
    return false;
}

}  // namespace

TEST(QtCanvasText, aLineOfThirteenPointsHasTheUnhintedMeasuresOfItsFont) {
    Surface surface(10, 10, 1);
    // 1233 of 2048 units wide, 1901 above and 483 below the line, each cut to a 64th of a point.
    EXPECT_EQ(surface.canvas().textSize("M", mono), (Size{7.8125, 15.125}));
    EXPECT_EQ(surface.canvas().textSize("AVAVToTo..", mono), (Size{78.125, 15.125}));
}

TEST(QtCanvasText, measuresDoNotDependOnTheRatio) {
    Surface surface(10, 10, 1.5);
    EXPECT_EQ(surface.canvas().textSize("AVAVToTo..", mono), (Size{78.125, 15.125}));
}

TEST(QtCanvasText, boldIsAsWideAsRegular) {
    Surface surface(10, 10, 1);
    const Font bold{mono.family, mono.size, FontWeight::bold};
    EXPECT_EQ(surface.canvas().textSize("AVAVToTo..", bold), (Size{78.125, 15.125}));
}

TEST(QtCanvasText, boldInkIsDarker) {
    const auto darkness = [](FontWeight weight) {
        Surface surface(100, 20, 1);
        surface.canvas().text("Name", {0, 0, 100, 20}, {mono.family, mono.size, weight}, black);
        double sum = 0;
        for (int y = 0; y < 20; ++y) {
            for (int x = 0; x < 100; ++x) sum += 255 - qGray(surface.pixel(x, y));
        }
        return sum;
    };
    EXPECT_GT(darkness(FontWeight::bold), 1.2 * darkness(FontWeight::regular));
}

TEST(QtCanvasText, theTopOfTheLineIsAtTheTopOfTheAreaAndLettersStandOnAWholePixel) {
    // The base line is 12.0625 points below the top and goes to the nearest pixel.
    for (const auto& [ratio, firstRowBelow] : {std::pair{1.0, 22}, std::pair{1.5, 33}, std::pair{2.0, 44}}) {
        Surface surface(40, 40, ratio);
        surface.canvas().text("H", {5, 10, 30, 20}, mono, black);
        EXPECT_EQ(surface.ink().bottom() + 1, firstRowBelow) << "at " << ratio;
        const int stem = surface.inkInRow(firstRowBelow - 2).front();
        EXPECT_EQ(surface.pixel(stem, firstRowBelow - 1), surface.pixel(stem, firstRowBelow - 2))
            << "the foot of the stem is as dark as its middle, at " << ratio;
    }
}

TEST(QtCanvasText, textThatIsTooWideEndsAtTheRightEdgeWithoutAnEllipsis) {
    const QImage whole = drawn("WWWWWWWWWW", {10, 5, 190, 20});
    const QImage cut = drawn("WWWWWWWWWW", {10, 5, 30, 20});
    EXPECT_EQ(cut.copy(0, 0, 40, 40), whole.copy(0, 0, 40, 40));
    Surface empty(200, 40, 1);
    EXPECT_EQ(cut.copy(40, 0, 160, 40), empty.image().copy(40, 0, 160, 40));
}

TEST(QtCanvasText, textIsNotCutAboveOrBelow) {
    EXPECT_EQ(drawn("Ågjpq|", {10, 5, 100, 1}), drawn("Ågjpq|", {10, 5, 100, 30}));
    EXPECT_EQ(drawn("Ågjpq|Ågjpq|", {10, 5, 60, 1}), drawn("Ågjpq|Ågjpq|", {10, 5, 60, 30}));
}

TEST(QtCanvasText, anAreaWithoutWidthShowsNoText) {
    Surface surface(40, 40, 1);
    surface.canvas().text("x", {5, 5, 0, 20}, mono, black);
    surface.canvas().text("x", {5, 5, -8, 20}, mono, black);
    EXPECT_TRUE(surface.ink().isEmpty());
}

TEST(QtCanvasText, aLineThatBeginsWithARightToLeftLetterStillBeginsAtTheLeft) {
    const QImage alone = drawn("א", {10, 5, 190, 20});
    const QImage beforeLatin = drawn("א xyz", {10, 5, 190, 20});
    EXPECT_EQ(beforeLatin.copy(0, 0, 17, 40), alone.copy(0, 0, 17, 40));
}

TEST(QtCanvasText, aTranslucentColourIsMixedWithTheGround) {
    Surface opaque(40, 40, 2);
    opaque.canvas().text("█", {10, 5, 20, 20}, mono, black);
    Surface translucent(40, 40, 2);
    translucent.canvas().text("█", {10, 5, 20, 20}, mono, black.withAlpha(0.4));
    const QPoint middle = opaque.ink().center();
    EXPECT_EQ(opaque.pixel(middle.x(), middle.y()), qRgb(0, 0, 0));
    EXPECT_EQ(translucent.pixel(middle.x(), middle.y()), qRgb(153, 153, 153));
}

TEST(QtCanvasText, theFolderAndThePageAreShownInColourAndMoveTheTextBehindThem) {
    Surface surface(200, 40, 1);
    EXPECT_GT(surface.canvas().textSize("📁", mono).width, 7.8125);
    EXPECT_EQ(surface.canvas().textSize("📁 src", mono).width,
              surface.canvas().textSize("📁", mono).width + 4 * 7.8125);
    EXPECT_TRUE(hasColour(drawn("📁", {10, 5, 100, 20})));
    EXPECT_TRUE(hasColour(drawn("📄", {10, 5, 100, 20})));
}

TEST(Pictures, areFoundAndReplacedByTwoSpacesEach) {
    const QString text = QString::fromUtf8("📁 a 📄");
    const QList<pictures::Place> places = pictures::find(text);
    ASSERT_EQ(places.size(), 2);
    EXPECT_EQ(places[0].picture, pictures::Picture::folder);
    EXPECT_EQ(places[0].index, 0);
    EXPECT_EQ(places[1].picture, pictures::Picture::page);
    EXPECT_EQ(places[1].index, 5);
    EXPECT_EQ(pictures::withPlaceholders(text), QString("   a   "));
}

TEST(Pictures, areDrawnInsideTheirSquareInThePensColour) {
    for (const auto picture : {pictures::Picture::folder, pictures::Picture::page}) {
        Surface surface(40, 40, 1);
        surface.painter().setPen(Qt::red);
        pictures::draw(surface.painter(), picture, {10, 12}, 13);
        EXPECT_FALSE(surface.ink().isEmpty());
        EXPECT_TRUE(QRect(10, 12, 13, 13).contains(surface.ink()));
        const QPoint corner = surface.ink().bottomLeft();
        EXPECT_EQ(surface.pixel(corner.x(), corner.y()), qRgb(255, 0, 0));
    }
}

}  // namespace vantrel::test
