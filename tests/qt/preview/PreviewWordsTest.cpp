#include "qt/preview/PreviewWords.h"

#include <gtest/gtest.h>

#include "support/ScopedEnvironment.h"

namespace vantrel::test {

namespace {

class PreviewWordsTest : public testing::Test {
protected:
    const ScopedLocale english{"en_US.UTF-8"};
    const PreviewItem item{.path = "/home/ann/a.bin", .name = "a.bin", .detail = ""};
};

}  // namespace

TEST_F(PreviewWordsTest, aSizeIsExactAndReadable) {
    EXPECT_EQ(previewWords::size(0), "0 bytes");
    EXPECT_EQ(previewWords::size(1), "1 byte");
    EXPECT_EQ(previewWords::size(1023), "1,023 bytes");
    EXPECT_EQ(previewWords::size(1024), "1.0 KiB (1,024 bytes)");
    EXPECT_EQ(previewWords::size(1'572'864), "1.5 MiB (1,572,864 bytes)");
    EXPECT_EQ(previewWords::size(quint64{3} << 40), "3.0 TiB (3,298,534,883,328 bytes)");
}

TEST_F(PreviewWordsTest, aFilesFactsAreNameKindSizeAndDate) {
    const ScopedEnvironment zone("TZ", "UTC");
    PreviewFacts facts;
    facts.kind = "unknown thing";
    facts.size = 2048;
    facts.modified = QDateTime::fromSecsSinceEpoch(951'782'400);
    EXPECT_EQ(previewWords::facts(item, facts),
              (QStringList{"a.bin", "Unknown thing", "2.0 KiB (2,048 bytes)", "2000-02-29 00:00"}));
}

TEST_F(PreviewWordsTest, numbersAndDatesFollowTheirOwnCategories) {
    const ScopedEnvironment zone("TZ", "UTC");
    PreviewFacts facts;
    facts.size = 1'572'864;
    facts.modified = QDateTime::fromSecsSinceEpoch(951'782'400);
    const ScopedEnvironment language("LANG", "C");
    EXPECT_EQ(previewWords::facts(item, facts),
              (QStringList{"a.bin", "1.5 MiB (1,572,864 bytes)", "2000-02-29 00:00"}));
    {
        const ScopedEnvironment numbers("LC_NUMERIC", "de_DE.UTF-8");
        EXPECT_EQ(previewWords::facts(item, facts),
                  (QStringList{"a.bin", "1,5 MiB (1.572.864 bytes)", "2000-02-29 00:00"}));
    }
    const ScopedEnvironment dates("LC_TIME", "fa_IR.UTF-8");
    EXPECT_EQ(previewWords::facts(item, facts),
              (QStringList{"a.bin", "1.5 MiB (1,572,864 bytes)", "۲۰۰۰-۰۲-۲۹ ۰۰:۰۰"}));
    const ScopedEnvironment all("LC_ALL", "en_GB.UTF-8");
    EXPECT_EQ(previewWords::facts(item, facts),
              (QStringList{"a.bin", "1.5 MiB (1,572,864 bytes)", "2000-02-29 00:00"}));
}

TEST_F(PreviewWordsTest, whatTheProgramKnowsBetterStandsInsteadOfTheSize) {
    PreviewFacts facts;
    facts.kind = "Folder";
    facts.isFolder = true;
    PreviewItem folder{.path = "/home/ann", .name = "ann", .detail = "  4.8 M"};
    EXPECT_EQ(previewWords::facts(folder, facts), (QStringList{"ann", "Folder", "4.8 M"}));
    folder.detail = "";
    EXPECT_EQ(previewWords::facts(folder, facts), (QStringList{"ann", "Folder"}));
}

TEST_F(PreviewWordsTest, ofAnUnknownFileOnlyTheNameIsSaid) {
    EXPECT_EQ(previewWords::facts(item, {}), QStringList{"a.bin"});
}

TEST_F(PreviewWordsTest, theCaptionSaysTheMeasureOfTheContent) {
    PreviewContent content;
    content.facts.kind = "PNG image";
    content.facts.size = 100;
    EXPECT_EQ(previewWords::caption(content), "PNG image  ·  100 bytes");
    content.body = ImageBody{.image = {}, .fullSize = {4000, 3000}};
    EXPECT_EQ(previewWords::caption(content), "PNG image  ·  4000 × 3000  ·  100 bytes");
    content.body = PagesBody{.pages = {}, .pageCount = 1};
    EXPECT_EQ(previewWords::caption(content), "PNG image  ·  1 page  ·  100 bytes");
    content.body = PagesBody{.pages = {}, .pageCount = 12};
    EXPECT_EQ(previewWords::caption(content), "PNG image  ·  12 pages  ·  100 bytes");
}

}  // namespace vantrel::test
