#include <gtest/gtest.h>

#include "text/Text.h"

namespace vantrel::text {

namespace {

const std::string eWithAcute = "\u00E9";
const std::string eAndAcute = "e\u0301";
const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";  // three people joined into one sign
const std::string flag = "\U0001F1E9\U0001F1EA";

}  // namespace

TEST(LowerCased, lowersLettersOfEveryScriptByTheRootLocale) {
    EXPECT_EQ(lowerCased("README.TXT"), "readme.txt");
    EXPECT_EQ(lowerCased("[\\]^_`{@"), "[\\]^_`{@");
    EXPECT_EQ(lowerCased("\u00C4\u042F\u03A9"), "\u00E4\u044F\u03C9");
    EXPECT_EQ(lowerCased("\u0130"), "i\u0307") << "a dotted capital I keeps its dot";
    EXPECT_EQ(lowerCased("I"), "i");
    EXPECT_EQ(lowerCased("\u039F\u03A3"), "\u03BF\u03C2") << "a sigma at the end of a word";
}

TEST(LowerCased, repairsBrokenSequences) {
    EXPECT_EQ(lowerCased("A\xFF"), "a\uFFFD");
}

TEST(HasPrefixIgnoringCase, matchesWithoutRegardToCase) {
    EXPECT_TRUE(hasPrefixIgnoringCase("README.txt", "readme"));
    EXPECT_TRUE(hasPrefixIgnoringCase("readme.txt", "R"));
    EXPECT_TRUE(hasPrefixIgnoringCase("\u00C4rger", "\u00E4"));
    EXPECT_TRUE(hasPrefixIgnoringCase("\u042F\u0431", "\u044F"));
    EXPECT_FALSE(hasPrefixIgnoringCase("readme", "eadme"));
    EXPECT_FALSE(hasPrefixIgnoringCase("read", "readme"));
    EXPECT_FALSE(hasPrefixIgnoringCase("arger", "\u00E4"));
}

TEST(HasPrefixIgnoringCase, matchesAnEmptyPrefixAlways) {
    EXPECT_TRUE(hasPrefixIgnoringCase("a", ""));
    EXPECT_TRUE(hasPrefixIgnoringCase("\u00E4", ""));
    EXPECT_TRUE(hasPrefixIgnoringCase("", ""));
    EXPECT_FALSE(hasPrefixIgnoringCase("", "a"));
}

TEST(HasPrefixIgnoringCase, doesNotTellComposedFromDecomposedSpelling) {
    EXPECT_TRUE(hasPrefixIgnoringCase(eAndAcute + "t\u00E9", eWithAcute));
    EXPECT_TRUE(hasPrefixIgnoringCase(eWithAcute + "t\u00E9", eAndAcute));
    EXPECT_TRUE(hasPrefixIgnoringCase("\u00C9t\u00E9", eAndAcute));
}

TEST(HasPrefixIgnoringCase, doesNotMatchAPartOfACharacter) {
    EXPECT_FALSE(hasPrefixIgnoringCase(eAndAcute + "t", "e"));
    EXPECT_FALSE(hasPrefixIgnoringCase(eWithAcute + "t", "e"));
    EXPECT_FALSE(hasPrefixIgnoringCase("x\u0302", "x")) << "a pair that has no composed form";
    EXPECT_FALSE(hasPrefixIgnoringCase(family, "\U0001F468"));
    EXPECT_FALSE(hasPrefixIgnoringCase("a\r\n", "a\r"));
    EXPECT_FALSE(hasPrefixIgnoringCase("\u0130x", "i"));
}

TEST(CharacterCount, countsWhatAPersonPerceivesAsOneCharacter) {
    EXPECT_EQ(characterCount(""), 0u);
    EXPECT_EQ(characterCount("plain text"), 10u);
    EXPECT_EQ(characterCount(eAndAcute + "t" + eWithAcute), 3u);
    EXPECT_EQ(characterCount(family + flag), 2u);
    EXPECT_EQ(characterCount("\u65E5\u672C"), 2u);
    EXPECT_EQ(characterCount("a\r\nb"), 3u);
    EXPECT_EQ(characterCount("a\xFF\xFF"), 3u);
}

TEST(LastCharacters, cutsBetweenCharactersOnly) {
    EXPECT_EQ(lastCharacters("abcdef", 3), "def");
    EXPECT_EQ(lastCharacters("caf" + eAndAcute, 1), eAndAcute);
    EXPECT_EQ(lastCharacters("x" + family + flag, 2), family + flag);
    EXPECT_EQ(lastCharacters("a\xFF"
                             "b",
                             2),
              "\uFFFD"
              "b");
}

TEST(LastCharacters, givesAllWhenThereAreFewerAndNothingForNone) {
    EXPECT_EQ(lastCharacters("abc", 3), "abc");
    EXPECT_EQ(lastCharacters("abc", 10), "abc");
    EXPECT_EQ(lastCharacters("abc", 0), "");
    EXPECT_EQ(lastCharacters(eAndAcute, 10), eAndAcute);
    EXPECT_EQ(lastCharacters(eAndAcute, 0), "");
    EXPECT_EQ(lastCharacters("", 2), "");
}

TEST(FirstCharacter, isTheWholeFirstCharacter) {
    EXPECT_EQ(firstCharacter("abc"), "a");
    EXPECT_EQ(firstCharacter(eAndAcute + "t"), eAndAcute);
    EXPECT_EQ(firstCharacter(family + "x"), family);
    EXPECT_EQ(firstCharacter("\xFFx"), "\uFFFD");
    EXPECT_EQ(firstCharacter(""), "");
}

TEST(BeginsWithLetterOrNumber, looksAtTheGeneralCategoryOfTheFirstCodePoint) {
    EXPECT_TRUE(beginsWithLetterOrNumber("a"));
    EXPECT_TRUE(beginsWithLetterOrNumber("9."));
    EXPECT_TRUE(beginsWithLetterOrNumber("\u00E9"));
    EXPECT_TRUE(beginsWithLetterOrNumber("\u65E5")) << "Lo";
    EXPECT_TRUE(beginsWithLetterOrNumber("\u0663")) << "Nd of another script";
    EXPECT_TRUE(beginsWithLetterOrNumber("\u00BD")) << "No";
    EXPECT_TRUE(beginsWithLetterOrNumber("\u2167")) << "Nl";
    EXPECT_FALSE(beginsWithLetterOrNumber(""));
    EXPECT_FALSE(beginsWithLetterOrNumber(".a"));
    EXPECT_FALSE(beginsWithLetterOrNumber(" a"));
    EXPECT_FALSE(beginsWithLetterOrNumber("\u0301")) << "Mn";
    EXPECT_FALSE(beginsWithLetterOrNumber("\x1B"));
    EXPECT_FALSE(beginsWithLetterOrNumber("\xFF"));
    EXPECT_FALSE(beginsWithLetterOrNumber("\U0001F600"));
}

}  // namespace vantrel::text
