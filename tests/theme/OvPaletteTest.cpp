#include "theme/OvPalette.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "support/FakeFontCatalog.h"

namespace vantrel {

using test::FakeFontCatalog;

TEST(OvPalette, theBaseColoursAreTheirFractions) {
    EXPECT_EQ(OvPalette::dosBlue, (Color{0.0, 0.0, 0.66, 1.0}));
    EXPECT_EQ(OvPalette::dosDarkBlue, (Color{0.0, 0.0, 0.52, 1.0}));
    EXPECT_EQ(OvPalette::dosCyan, (Color{0.0, 0.67, 0.67, 1.0}));
    EXPECT_EQ(OvPalette::dosBrightCyan, (Color{0.33, 1.0, 1.0, 1.0}));
    EXPECT_EQ(OvPalette::dosYellow, (Color{1.0, 1.0, 0.33, 1.0}));
    EXPECT_EQ(OvPalette::dosBrightWhite, (Color{1.0, 1.0, 1.0, 1.0}));
    EXPECT_EQ(OvPalette::dosWhite, (Color{0.85, 0.85, 0.85, 1.0}));
    EXPECT_EQ(OvPalette::dosLightGray, (Color{0.67, 0.67, 0.67, 1.0}));
    EXPECT_EQ(OvPalette::dosDarkGray, (Color{0.33, 0.33, 0.33, 1.0}));
    EXPECT_EQ(OvPalette::dosBlack, (Color{0.0, 0.0, 0.0, 1.0}));
    EXPECT_EQ(OvPalette::dosGreen, (Color{0.33, 1.0, 0.33, 1.0}));
    EXPECT_EQ(OvPalette::dosRed, (Color{1.0, 0.33, 0.33, 1.0}));
    EXPECT_EQ(OvPalette::dosDialogBg, (Color{0.0, 0.55, 0.55, 1.0}));
    EXPECT_EQ(OvPalette::dosMenuBarBg, (Color{0.67, 0.67, 0.67, 1.0}));
    EXPECT_EQ(OvPalette::inactiveSelectionBg, (Color{0.0, 0.3, 0.5, 1.0}));
}

TEST(OvPalette, sevenRolesAreTheirBaseColourItselfAndNotACopy) {
    EXPECT_EQ(&OvPalette::activeSelectionBg, &OvPalette::dosCyan);
    EXPECT_EQ(&OvPalette::activeSelectionText, &OvPalette::dosBlack);
    EXPECT_EQ(&OvPalette::inactiveSelectionText, &OvPalette::dosWhite);
    EXPECT_EQ(&OvPalette::fnKeyNumBg, &OvPalette::dosBlack);
    EXPECT_EQ(&OvPalette::fnKeyNumText, &OvPalette::dosBrightCyan);
    EXPECT_EQ(&OvPalette::fnKeyLblBg, &OvPalette::dosCyan);
    EXPECT_EQ(&OvPalette::fnKeyLblText, &OvPalette::dosBlack);
}

TEST(OvPalette, lookAlikesAreDistinctConstants) {
    EXPECT_NE(&OvPalette::dosLightGray, &OvPalette::dosMenuBarBg);
}

TEST(OvPalette, menloIsPreferredToSfMonoAndSfMonoToCourier) {
    const FakeFontCatalog all({"Courier", "Menlo", "SF Mono"});
    const FakeFontCatalog two({"Courier", "SF Mono"});
    const FakeFontCatalog one({"Courier"});
    EXPECT_EQ(OvPalette::retroFont(all, 13, FontWeight::regular), (Font{"Menlo", 13, FontWeight::regular}));
    EXPECT_EQ(OvPalette::retroFont(two, 13, FontWeight::regular), (Font{"SF Mono", 13, FontWeight::regular}));
    EXPECT_EQ(OvPalette::retroFont(one, 11, FontWeight::regular), (Font{"Courier", 11, FontWeight::regular}));
}

TEST(OvPalette, aNamedFaceBecomesBoldByConversionAndStaysAsItIsWhereTheFamilyHasNoBoldFace) {
    FakeFontCatalog fonts({"Menlo"});
    EXPECT_EQ(OvPalette::retroFont(fonts, 13, FontWeight::bold), (Font{"Menlo", 13, FontWeight::bold}));
    fonts.withoutBoldFace = {"Menlo"};
    EXPECT_EQ(OvPalette::retroFont(fonts, 13, FontWeight::bold), (Font{"Menlo", 13, FontWeight::regular}));
}

TEST(OvPalette, withNoneOfTheThreeNamesTheSystemsMonospacedFaceComesInThatWeight) {
    const FakeFontCatalog none({"Some Sans"});
    EXPECT_EQ(OvPalette::retroFont(none, 13, FontWeight::bold), (Font{"System Mono", 13, FontWeight::bold}));
    EXPECT_EQ(OvPalette::retroFont(none, 13, FontWeight::regular),
              (Font{"System Mono", 13, FontWeight::regular}));
}

TEST(OvPalette, theBoxCharactersAreTheirCodePointsInUtf8) {
    using Box = OvPalette::BoxChars;
    EXPECT_EQ(Box::topLeft, "\xE2\x95\x94");
    EXPECT_EQ(Box::topRight, "\xE2\x95\x97");
    EXPECT_EQ(Box::bottomLeft, "\xE2\x95\x9A");
    EXPECT_EQ(Box::bottomRight, "\xE2\x95\x9D");
    EXPECT_EQ(Box::horizontal, "\xE2\x95\x90");
    EXPECT_EQ(Box::vertical, "\xE2\x95\x91");
    EXPECT_EQ(Box::topTee, "\xE2\x95\xA6");
    EXPECT_EQ(Box::bottomTee, "\xE2\x95\xA9");
    EXPECT_EQ(Box::leftTee, "\xE2\x95\xA0");
    EXPECT_EQ(Box::rightTee, "\xE2\x95\xA3");
    EXPECT_EQ(Box::cross, "\xE2\x95\xAC");
    EXPECT_EQ(Box::singleHoriz, "\xE2\x94\x80");
    EXPECT_EQ(Box::singleVert, "\xE2\x94\x82");
    EXPECT_EQ(Box::doubleLeftSingleRight, "\xE2\x95\x9E");
    EXPECT_EQ(Box::doubleRightSingleLeft, "\xE2\x95\xA1");
}

}  // namespace vantrel
