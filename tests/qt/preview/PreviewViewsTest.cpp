#include "qt/preview/PreviewViews.h"

#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>

#include "qt/QtTestSupport.h"
#include "support/TemporaryFolder.h"

namespace vantrel::test {

namespace {

/// Adds an icon to those of the theme: a red square with sides of that many pixels.
class ExtraIcon {
public:
    ExtraIcon(const QString& name, int side) {
        QImage square(side, side, QImage::Format_RGB32);
        square.fill(Qt::red);
        EXPECT_TRUE(square.save(QString::fromStdString(folder_.path(name.toStdString() + ".png"))));
        // Without a theme Qt looks for no icon at all, not even in the fallback paths.
        QIcon::setThemeName("hicolor");
        QIcon::setFallbackSearchPaths({QString::fromStdString(folder_.path())});
    }
    ExtraIcon(const ExtraIcon&) = delete;
    ExtraIcon& operator=(const ExtraIcon&) = delete;
    ~ExtraIcon() {
        QIcon::setFallbackSearchPaths(pathsBefore_);
        QIcon::setThemeName(themeBefore_);
    }

private:
    TemporaryFolder folder_;
    QStringList pathsBefore_ = QIcon::fallbackSearchPaths();
    QString themeBefore_ = QIcon::themeName();
};

QRect redArea(const QImage& image) {
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == qRgb(255, 0, 0)) area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

}  // namespace

TEST(FactsView, anIconSmallerThanItsPlaceStandsInTheMiddleOfIt) {
    const ExtraIcon icon("vantrel-test-kind", 48);
    FactsView view;
    view.resize(400, 400);
    PreviewFacts facts;
    facts.iconName = "vantrel-test-kind";
    view.setFacts(facts, {"name"});
    const QRect shown = redArea(view.grab().toImage());
    EXPECT_EQ(shown.size(), QSize(48, 48));
    EXPECT_EQ(shown.left(), (400 - 48) / 2);
}

}  // namespace vantrel::test
