#include "qt/QtFileNameText.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/HostileNames.h"

namespace vantrel::test {

TEST(QtFileNameText, textIsText) {
    for (const std::string name : {"", "a", "caf\u00E9", "\u65E5\u672C", "\U0001F600", "e\u0301", "\uFFFD"}) {
        EXPECT_EQ(textOf(name), QString::fromStdString(name));
        EXPECT_EQ(bytesOf(textOf(name)), name);
    }
}

TEST(QtFileNameText, everyByteThatIsNoTextIsOneCharacterAndComesBack) {
    EXPECT_EQ(textOf("caf\xE9.txt"), QString("caf") + QChar(0xDCE9) + ".txt");
    EXPECT_EQ(bytesOf(textOf("caf\xE9.txt") + "Z"), "caf\xE9.txtZ");
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        const std::string name = std::string("a") + static_cast<char>(byte) + "b";
        EXPECT_EQ(textOf(name).size(), 3);
        EXPECT_EQ(bytesOf(textOf(name)), name);
    }
}

TEST(QtFileNameText, brokenOverlongAndSurrogateSequencesComeBack) {
    for (const std::string name : {"\xC3", "\xC3\xC3\xA9", "\xC0\xAF", "\xED\xB3\xA9",
                                   "\xED\xA0\xBD\xED\xB8\x80", "\xF4\x90\x80\x80", "\xF0\x9F\x98",
                                   "\xEF\xBB\xBF"
                                   "bom",
                                   "\xFF\xFE"}) {
        EXPECT_EQ(bytesOf(textOf(name)), name);
    }
}

TEST(QtFileNameText, anyBytesComeBack) {
    std::mt19937 random(1);
    for (int round = 0; round < 20'000; ++round) {
        std::string name;
        for (unsigned length = random() % 12; length > 0; --length) {
            // Mostly bytes that begin or continue sequences.
            name += static_cast<char>(random() % 3 == 0 ? random() % 256 : 0x80 + random() % 128);
        }
        ASSERT_EQ(bytesOf(textOf(name)), name);
    }
}

TEST(QtFileNameText, hostileNamesComeBack) {
    for (const std::string& name : hostileNames(2000)) EXPECT_EQ(bytesOf(textOf(name)), name);
}

TEST(QtFileNameText, aPastedLoneSurrogateBecomesAReplacementCharacter) {
    EXPECT_EQ(bytesOf(QString("a") + QChar(0xD83D) + "b"), "a\uFFFDb");
    EXPECT_EQ(bytesOf(QString("a") + QChar(0xDE00) + "b"), "a\uFFFDb");
}

}  // namespace vantrel::test
