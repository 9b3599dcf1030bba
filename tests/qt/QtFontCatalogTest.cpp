#include "qt/QtFontCatalog.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QSet>

#include "qt/QtFace.h"

namespace vantrel::test {

namespace {

QtFontCatalog catalogWith(const QSet<QString>& installed) {
    return QtFontCatalog([installed](const QString& family) { return installed.contains(family); });
}

}  // namespace

TEST(QtFontCatalog, menloIsMenloWhereItIsInstalled) {
    const auto fonts = catalogWith({"Menlo", "DejaVu Sans Mono"});
    EXPECT_EQ(fonts.fontNamed("Menlo", 13), (Font{"Menlo", 13, FontWeight::regular}));
}

TEST(QtFontCatalog, dejaVuSansMonoAnswersForMenloWhereThatIsMissing) {
    const auto fonts = catalogWith({"DejaVu Sans Mono", "Courier"});
    EXPECT_EQ(fonts.fontNamed("Menlo", 13), (Font{"DejaVu Sans Mono", 13, FontWeight::regular}));
}

TEST(QtFontCatalog, nothingAnswersForMenloWhereBothAreMissing) {
    EXPECT_EQ(catalogWith({"Courier", "SF Mono"}).fontNamed("Menlo", 13), std::nullopt);
}

TEST(QtFontCatalog, onlySfMonoItselfAnswersForSfMono) {
    EXPECT_EQ(catalogWith({"Menlo", "Courier"}).fontNamed("SF Mono", 13), std::nullopt);
    EXPECT_EQ(catalogWith({"SF Mono"}).fontNamed("SF Mono", 11), (Font{"SF Mono", 11, FontWeight::regular}));
}

TEST(QtFontCatalog, aFaceWithTheMetricsOfCourierAnswersForItWhereItIsInstalled) {
    EXPECT_EQ(catalogWith({"Courier", "Nimbus Mono PS"}).fontNamed("Courier", 13),
              (Font{"Courier", 13, FontWeight::regular}));
    EXPECT_EQ(catalogWith({"Nimbus Mono PS"}).fontNamed("Courier", 13),
              (Font{"Nimbus Mono PS", 13, FontWeight::regular}));
    EXPECT_EQ(catalogWith({"DejaVu Sans Mono"}).fontNamed("Courier", 13), std::nullopt);
}

TEST(QtFontCatalog, aFamilyThatIsNotInstalledIsNotReplacedByAnother) {
    EXPECT_EQ(QtFontCatalog().fontNamed("No Such Family", 13), std::nullopt);
}

TEST(QtFontCatalog, boldIsTheSameFamilyAndSizeInBold) {
    EXPECT_EQ(QtFontCatalog().convertToBold({"DejaVu Sans Mono", 11, FontWeight::regular}),
              (Font{"DejaVu Sans Mono", 11, FontWeight::bold}));
}

TEST(QtFontCatalog, aFamilyWithoutABoldFaceStaysAsItIs) {
    const Font unknown{"No Such Family", 13, FontWeight::regular};
    EXPECT_EQ(QtFontCatalog().convertToBold(unknown), unknown);
}

TEST(QtFontCatalog, theSystemsMonospacedFaceIsMonospacedAndAsAsked) {
    for (const FontWeight weight : {FontWeight::regular, FontWeight::bold}) {
        const Font font = QtFontCatalog().monospacedSystemFont(13, weight);
        EXPECT_TRUE(QFontDatabase::isFixedPitch(QString::fromStdString(font.family))) << font.family;
        EXPECT_EQ(font.size, 13);
        EXPECT_EQ(font.weight, weight);
        const QtFace face(font);
        EXPECT_EQ(face.width("iiii"), face.width("WWWW"));
    }
}

}  // namespace vantrel::test
