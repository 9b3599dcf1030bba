#include <gtest/gtest.h>

#include "text/Text.h"

namespace vantrel::text {

TEST(RepairedUtf8, leavesValidTextAsItIs) {
    EXPECT_EQ(repairedUtf8(""), "");
    EXPECT_EQ(repairedUtf8("plain\ttext\n"), "plain\ttext\n");
    EXPECT_EQ(repairedUtf8("caf\u00E9 \u65E5\u672C \U0001F600"), "caf\u00E9 \u65E5\u672C \U0001F600");
    EXPECT_EQ(repairedUtf8(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(RepairedUtf8, putsOneReplacementCharacterForEachMaximalBrokenSequence) {
    EXPECT_EQ(repairedUtf8("caf\xE9.txt"), "caf\uFFFD.txt");
    EXPECT_EQ(repairedUtf8("\xE2\x82"), "\uFFFD") << "a sequence cut short is one";
    EXPECT_EQ(repairedUtf8("\xC0\xAF"), "\uFFFD\uFFFD") << "an overlong form is none, each byte is broken";
    EXPECT_EQ(repairedUtf8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD") << "an encoded surrogate";
    EXPECT_EQ(repairedUtf8("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD") << "beyond U+10FFFF";
    EXPECT_EQ(repairedUtf8("\xFF\x41\x80"),
              "\uFFFD"
              "A\uFFFD");
}

TEST(ShownText, isTheNameItselfWhereNothingInItDisturbs) {
    EXPECT_EQ(shownText(""), "");
    EXPECT_EQ(shownText("letter (2).txt"), "letter (2).txt");
    EXPECT_EQ(shownText("caf\u00E9 \u65E5\u672C \U0001F600"), "caf\u00E9 \u65E5\u672C \U0001F600");
}

TEST(ShownText, replacesEveryControlCharacter) {
    EXPECT_EQ(shownText("a\nb"), "a\uFFFDb");
    EXPECT_EQ(shownText("\x01\t\r\x1B[31m\x1F"), "\uFFFD\uFFFD\uFFFD\uFFFD[31m\uFFFD");
    EXPECT_EQ(shownText("\x7F"), "\uFFFD");
    EXPECT_EQ(shownText(std::string("\0", 1)), "\uFFFD");
}

TEST(ShownText, replacesBrokenSequencesAndCharactersThatWouldMoveTheirSurroundings) {
    EXPECT_EQ(shownText("caf\xE9"), "caf\uFFFD");
    EXPECT_EQ(shownText("a\xC2\x85z"), "a\uFFFDz") << "a C1 control";
    EXPECT_EQ(shownText("a\xC2\x9Fz"), "a\uFFFDz") << "the last C1 control";
    EXPECT_EQ(shownText("a\u00A0z"), "a\u00A0z") << "a no-break space is none";
    EXPECT_EQ(shownText("a\u2028z"), "a\uFFFDz") << "a line separator";
    EXPECT_EQ(shownText("a\u2029z"), "a\uFFFDz") << "a paragraph separator";
    EXPECT_EQ(shownText("gpj.\u202Eexe"), "gpj.\uFFFDexe") << "an override";
    EXPECT_EQ(shownText("\u200E\u200F\u061C\u202A\u2066\u2069"), "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(ShownText, isolatesTextThatHoldsRightToLeftCharacters) {
    EXPECT_EQ(shownText("\u05E9\u05DC\u05D5\u05DD.txt"), "\u2068\u05E9\u05DC\u05D5\u05DD.txt\u2069");
    EXPECT_EQ(shownText("a \u0645"),
              "\u2068"
              "a \u0645\u2069");
    EXPECT_EQ(shownText("\U00010800"), "\u2068\U00010800\u2069") << "beyond the basic plane";
}

}  // namespace vantrel::text
