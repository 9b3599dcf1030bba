#include "qt/preview/PreviewText.h"

#include <gtest/gtest.h>

namespace vantrel::test {

namespace {

std::optional<QString> wholeText(const QByteArray& bytes) {
    const auto body = decodeText(bytes, TextPart::whole);
    return body ? std::optional(body->text) : std::nullopt;
}

}  // namespace

TEST(PreviewText, showsUtf8AsItIs) {
    EXPECT_EQ(wholeText("caf\xC3\xA9\n\tsecond \xE6\xBC\xA2\n"), QString("café\n\tsecond 漢\n"));
}

TEST(PreviewText, repairsWhatIsNotUtf8) {
    EXPECT_EQ(wholeText("a caf\xE9, as it was written long ago"),
              QString("a caf\uFFFD, as it was written long ago"));
}

TEST(PreviewText, readsUtf16WithAByteOrderMark) {
    EXPECT_EQ(wholeText(QByteArray("\xFF\xFEh\0\xE9\0", 6)), QString("hé"));
    EXPECT_EQ(wholeText(QByteArray("\xFE\xFF\0h\0\xE9", 6)), QString("hé"));
}

TEST(PreviewText, leavesOutTheByteOrderMarkOfUtf8) {
    EXPECT_EQ(wholeText("\xEF\xBB\xBFtext"), QString("text"));
}

TEST(PreviewText, endsLinesInOneWay) {
    EXPECT_EQ(wholeText("one\r\ntwo\rthree\nfour"), QString("one\ntwo\nthree\nfour"));
}

TEST(PreviewText, makesControlCharactersHarmless) {
    EXPECT_EQ(wholeText("a terminal's \x1B[1mbold\x1B[0m text"),
              QString("a terminal's \uFFFD[1mbold\uFFFD[0m text"));
}

TEST(PreviewText, aZeroByteMeansNoText) {
    EXPECT_EQ(wholeText(QByteArray("text\0text", 9)), std::nullopt);
}

TEST(PreviewText, manyStrangeCharactersMeanNoText) {
    EXPECT_EQ(wholeText("\x01\x02 of ten"), std::nullopt);
    EXPECT_EQ(wholeText("\xFA\xFB\xFC\xFD\xFE\xFF"), std::nullopt);
}

TEST(PreviewText, nothingIsNoText) {
    EXPECT_EQ(wholeText(""), std::nullopt);
}

TEST(PreviewText, aBeginningEndsWithAnEllipsisAndWithoutHalfACharacter) {
    const auto body = decodeText("caf\xC3", TextPart::beginning);
    ASSERT_TRUE(body);
    EXPECT_EQ(body->text, QString("caf…"));
}

TEST(PreviewText, aWholeTextShowsThatItEndsWithHalfACharacter) {
    EXPECT_EQ(wholeText("a long text, caf\xC3"), QString("a long text, caf\uFFFD"));
}

TEST(PreviewText, breaksVeryLongLines) {
    const auto text = wholeText(QByteArray(2500, 'x'));
    EXPECT_EQ(text, QString(1000, 'x') + '\n' + QString(1000, 'x') + '\n' + QString(500, 'x'));
}

TEST(PreviewText, breaksNoCharacterOfTwoUnits) {
    const auto text = wholeText(QByteArray(999, 'x') + "\xF0\x9F\x93\x81" + "y");
    EXPECT_EQ(text, QString(999, 'x') + QString::fromUtf8("\xF0\x9F\x93\x81") + "\ny");
}

}  // namespace vantrel::test
