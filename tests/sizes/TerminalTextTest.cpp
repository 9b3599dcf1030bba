#include "sizes/TerminalText.h"

#include <gtest/gtest.h>

namespace vantrel::sizes {
namespace {

TEST(TerminalText, keepsTextOfEveryLanguage) {
    EXPECT_EQ(terminalText("/home/ann/caf\u00E9 \u65E5\u672C \U0001F4C1"),
              "/home/ann/caf\u00E9 \u65E5\u672C \U0001F4C1");
}

TEST(TerminalText, replacesControls) {
    EXPECT_EQ(terminalText("a\nb\x1B[2J\x7F"), "a?b?[2J?");
    EXPECT_EQ(terminalText("\u0080\u009F\u00A0"), "??\u00A0");
}

TEST(TerminalText, replacesWhatTurnsTheRestOfTheLine) {
    EXPECT_EQ(terminalText("\u061C\u200E\u200F\u2028\u2029\u202A\u202E\u2066\u2069"), "?????????");
    EXPECT_EQ(terminalText("\u2027\u202F\u2065\u206A"), "\u2027\u202F\u2065\u206A");
}

TEST(TerminalText, replacesEachBrokenByte) {
    EXPECT_EQ(terminalText("caf\xE9.txt"), "caf?.txt");
    EXPECT_EQ(terminalText("\x80\xC0\xAF\xFF"), "????");
    EXPECT_EQ(terminalText("\xE2\x82"), "??");
    EXPECT_EQ(terminalText("\xE0\x80\x80"), "???") << "longer than need be";
    EXPECT_EQ(terminalText("\xED\xA0\x80"), "???") << "half a surrogate pair";
    EXPECT_EQ(terminalText("\xF4\x90\x80\x80"), "????") << "beyond the last code point";
    EXPECT_EQ(terminalText("\xC3\x28"), "?(");
}

}  // namespace
}  // namespace vantrel::sizes
