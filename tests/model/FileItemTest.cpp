#include "model/FileItem.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/ScopedEnvironment.h"

namespace vantrel {
namespace {

using enum SizeDisplayMode;

std::string human(std::int64_t bytes) {
    return FileItem::formatBytes(bytes, humanReadable);
}

FileItem folderIn(VantrelState state) {
    return FileItem({.name = "src", .path = "/src", .isDirectory = true, .vantrelState = std::move(state)});
}

TEST(FormatBytes, upTo1023BytesAreWrittenInAFieldOfFourDigitsWithATrailingBlank) {
    EXPECT_EQ(human(0), "   0 B ");
    EXPECT_EQ(human(7), "   7 B ");
    EXPECT_EQ(human(1023), "1023 B ");
}

TEST(FormatBytes, negativeCountsTakeTheByteBranch) {
    EXPECT_EQ(human(-5), "  -5 B ");
    EXPECT_EQ(human(-12345), "-12345 B ");
}

TEST(FormatBytes, theUnitChangesAtThePowersOfTwoOfTheRawCount) {
    EXPECT_EQ(human(1024), "   1.0 K");
    EXPECT_EQ(human(1048575), "1024.0 K");
    EXPECT_EQ(human(1048576), "   1.0 M");
    EXPECT_EQ(human(1073741823), "1024.0 M");
    EXPECT_EQ(human(1073741824), "  1.00 G");
    EXPECT_EQ(human(1099511627775), "1024.00 G");
    EXPECT_EQ(human(1099511627776), "  1.00 T");
}

TEST(FormatBytes, kilobytesAndMegabytesHaveOneDecimalGigabytesAndTerabytesTwo) {
    EXPECT_EQ(human(1536), "   1.5 K");
    EXPECT_EQ(human(1572864), "   1.5 M");
    EXPECT_EQ(human(1610612736), "  1.50 G");
    EXPECT_EQ(human(1649267441664), "  1.50 T");
}

TEST(FormatBytes, roundingIsThatOfPrintf) {
    EXPECT_EQ(human(1075), "   1.0 K");  // 1.0498 K
    EXPECT_EQ(human(1076), "   1.1 K");  // 1.0508 K
    EXPECT_EQ(human(1280), "   1.2 K");  // 1.25 K exactly: a tie goes to the even digit
    EXPECT_EQ(human(1792), "   1.8 K");  // 1.75 K exactly
}

TEST(FormatBytes, aNumberTooWideForItsFieldIsWrittenWhole) {
    EXPECT_EQ(human(std::numeric_limits<std::int64_t>::max()), "8388608.00 T");
}

TEST(FormatBytes, rawBytesAreGroupedByAnEnglishLocaleAndEndInBlankB) {
    const test::ScopedLocale locale("en_US.UTF-8");
    EXPECT_EQ(FileItem::formatBytes(1234567, rawBytes), "1,234,567 B");
    EXPECT_EQ(FileItem::formatBytes(0, rawBytes), "0 B");
    EXPECT_EQ(FileItem::formatBytes(-1234, rawBytes), "-1,234 B");
}

TEST(FormatBytes, rawBytesFollowTheUsersLocaleAndUnitsDoNot) {
    const test::ScopedLocale locale("de_DE.UTF-8");
    EXPECT_EQ(FileItem::formatBytes(1234567, rawBytes), "1.234.567 B");
    EXPECT_EQ(human(1536), "   1.5 K");
}

TEST(FileItem, theParentRowSaysUpDirInBothModesAndHasNoDateNoTimeAndNoSize) {
    const FileItem parent(FileItem::parentDirectory("/a/b"));
    EXPECT_EQ(parent.formattedSize(humanReadable), "<UP--DIR>");
    EXPECT_EQ(parent.formattedSize(rawBytes), "<UP--DIR>");
    EXPECT_EQ(parent.formattedDate(), "");
    EXPECT_EQ(parent.formattedTime(), "");
    EXPECT_EQ(parent.effectiveSize(), 0);
}

TEST(FileItem, theParentRowOfAFolderNamesTheFolderAbove) {
    const FileItem parent(FileItem::parentDirectory("/a/b"));
    EXPECT_EQ(parent.name, "..");
    EXPECT_EQ(parent.path, "/a");
    EXPECT_TRUE(parent.isDirectory);
    EXPECT_TRUE(parent.isParentDir);
    EXPECT_FALSE(parent.isExecutable);
    EXPECT_FALSE(parent.isSymlink);
    EXPECT_FALSE(parent.isHidden);
    EXPECT_EQ(parent.size, 0);
    EXPECT_EQ(parent.vantrelState, VantrelState(state::Parent{}));
    EXPECT_EQ(parent.fileExtension, "");
    EXPECT_EQ(FileItem::parentDirectory("/a").path, "/");
    EXPECT_EQ(FileItem::parentDirectory("/").path, "/");
}

TEST(FileItem, anItemBuiltAsParentIsInStateParentWhateverWasPassed) {
    const FileItem item({.name = "..",
                         .path = "/",
                         .isDirectory = true,
                         .isParentDir = true,
                         .vantrelState = state::Calculated{5, 1}});
    EXPECT_EQ(item.vantrelState, VantrelState(state::Parent{}));
}

TEST(FileItem, whatIsNotPassedTakesItsDefault) {
    const auto before = std::chrono::system_clock::now();
    const FileItem item({.name = "x", .path = "/x"});
    EXPECT_FALSE(item.isDirectory);
    EXPECT_FALSE(item.isParentDir);
    EXPECT_FALSE(item.isExecutable);
    EXPECT_FALSE(item.isSymlink);
    EXPECT_FALSE(item.isHidden);
    EXPECT_EQ(item.size, 0);
    EXPECT_EQ(item.vantrelState, VantrelState(state::NotCalculated{}));
    EXPECT_GE(item.modDate, before);
    EXPECT_LE(item.modDate, std::chrono::system_clock::now());
}

TEST(FileItem, everyItemHasAnIdentityOfItsOwnAndTheUrlOfItsPath) {
    const FileItem a({.name = "a b", .path = "/x/a b"});
    const FileItem b({.name = "a b", .path = "/x/a b"});
    EXPECT_NE(a.id, b.id);
    EXPECT_EQ(a.url(), "file:///x/a%20b");
}

TEST(Uuid, aRandomOneCarriesVersion4AndItsVariant) {
    const Uuid id = Uuid::random();
    EXPECT_EQ((id.words[0] >> 12) & 0xF, 4U);
    EXPECT_EQ(id.words[1] >> 62, 2U);
}

TEST(FileItem, theExtensionIsLowerCasedAndAFolderHasNone) {
    EXPECT_EQ(FileItem({.name = "README.TXT", .path = "/README.TXT"}).fileExtension, "txt");
    EXPECT_EQ(FileItem({.name = "archive.tar.GZ", .path = "/"}).fileExtension, "gz");
    EXPECT_EQ(FileItem({.name = "photo.\xC3\x89T\xC3\x89", .path = "/"}).fileExtension, "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(FileItem({.name = ".profile", .path = "/.profile"}).fileExtension, "");
    EXPECT_EQ(FileItem({.name = "Makefile", .path = "/"}).fileExtension, "");
    EXPECT_EQ(FileItem({.name = "photos.lib", .path = "/", .isDirectory = true}).fileExtension, "");
}

TEST(FileItem, theSizeForSortingIsTheFilesSizeOrTheFoldersRunningOrFinalTotal) {
    EXPECT_EQ(FileItem({.name = "f", .path = "/f", .size = 42}).effectiveSize(), 42);
    EXPECT_EQ(folderIn(state::Calculating{7, 1}).effectiveSize(), 7);
    EXPECT_EQ(folderIn(state::Calculated{9, 2}).effectiveSize(), 9);
    EXPECT_EQ(folderIn(state::Error{"no"}).effectiveSize(), 0);
    EXPECT_EQ(folderIn(state::NotCalculated{}).effectiveSize(), 0);
    const FileItem listed({.name = "d", .path = "/d", .isDirectory = true, .size = 4096});
    EXPECT_EQ(listed.effectiveSize(), 0);
}

TEST(FileItem, aFileShowsItsSizeInEitherMode) {
    const test::ScopedLocale locale("en_US.UTF-8");
    const FileItem file({.name = "f", .path = "/f", .size = 1536, .vantrelState = state::Parent{}});
    EXPECT_EQ(file.formattedSize(humanReadable), "   1.5 K");
    EXPECT_EQ(file.formattedSize(rawBytes), "1,536 B");
}

TEST(FileItem, aFolderWithNothingCountedYetShowsTheSpinnerAndCalc) {
    const FileItem folder = folderIn(state::Calculating{0, 0});
    EXPECT_EQ(folder.formattedSize(humanReadable, 0), "[| calc] ");
    EXPECT_EQ(folder.formattedSize(rawBytes, 0), "[| calc] ");
}

TEST(FileItem, aFolderThatIsCountingShowsTheSpinnerAndTheBytesSoFar) {
    const test::ScopedLocale locale("en_US.UTF-8");
    const FileItem folder = folderIn(state::Calculating{1572864, 3});
    EXPECT_EQ(folder.formattedSize(humanReadable, 0), "[|]    1.5 M");
    EXPECT_EQ(folder.formattedSize(rawBytes, 2), "[-] 1,572,864 B");
}

TEST(FileItem, theSpinnerIsBarSlashHyphenBackslashAndBeginsAnewAtFour) {
    const FileItem folder = folderIn(state::Calculating{0, 0});
    EXPECT_EQ(folder.formattedSize(humanReadable, 0), "[| calc] ");
    EXPECT_EQ(folder.formattedSize(humanReadable, 1), "[/ calc] ");
    EXPECT_EQ(folder.formattedSize(humanReadable, 2), "[- calc] ");
    EXPECT_EQ(folder.formattedSize(humanReadable, 3), "[\\ calc] ");
    EXPECT_EQ(folder.formattedSize(humanReadable, 4), "[| calc] ");
}

TEST(FileItemDeathTest, aNegativeSpinnerFrameStopsTheProgram) {
    const FileItem folder = folderIn(state::Calculating{0, 0});
    EXPECT_DEATH((void)folder.formattedSize(humanReadable, -1), "spinner");
}

TEST(FileItem, theOtherStatesOfAFolderHaveTheirFixedTexts) {
    EXPECT_EQ(folderIn(state::Calculated{1572864, 3}).formattedSize(humanReadable), "   1.5 M");
    EXPECT_EQ(folderIn(state::Error{"never shown"}).formattedSize(humanReadable), "<ERROR>   ");
    EXPECT_EQ(folderIn(state::NotCalculated{}).formattedSize(humanReadable), "<DIR>     ");
    EXPECT_EQ(folderIn(state::Parent{}).formattedSize(humanReadable), "<UP--DIR>");
}

TEST(FileItem, dateAndTimeFollowTheirPatternsInTheUsersTimeZone) {
    const test::ScopedLocale locale("en_US.UTF-8");
    const test::ScopedEnvironment timeZone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    using namespace std::chrono;
    const FileTime moment = sys_days(2024y / March / 5) + 22h + 59min;
    const FileItem item({.name = "f", .path = "/f", .modDate = moment});
    EXPECT_EQ(item.formattedDate(), "2024-03-05");
    EXPECT_EQ(item.formattedTime(), "23:59");
}

TEST(FileItem, thePatternsAreSharedConstants) {
    EXPECT_EQ(FileItem::dateFormatter.pattern, "yyyy-MM-dd");
    EXPECT_EQ(FileItem::timeFormatter.pattern, "HH:mm");
}

}  // namespace
}  // namespace vantrel
