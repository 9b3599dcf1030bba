#include "base/Paths.h"

#include <gtest/gtest.h>

namespace vantrel::paths {

TEST(Paths, theLastComponentIgnoresTrailingSlashesAndTheRootIsItsOwn) {
    EXPECT_EQ(lastComponent("/a/b/c.txt"), "c.txt");
    EXPECT_EQ(lastComponent("/a/b/"), "b");
    EXPECT_EQ(lastComponent("b"), "b");
    EXPECT_EQ(lastComponent("/"), "/");
    EXPECT_EQ(lastComponent(""), "");
}

TEST(Paths, deletingTheLastComponentGivesTheParentAndTheRootStaysTheRoot) {
    EXPECT_EQ(deletingLastComponent("/a/b"), "/a");
    EXPECT_EQ(deletingLastComponent("/a/b//"), "/a");
    EXPECT_EQ(deletingLastComponent("/a//b"), "/a");
    EXPECT_EQ(deletingLastComponent("/a"), "/");
    EXPECT_EQ(deletingLastComponent("/"), "/");
    EXPECT_EQ(deletingLastComponent("a"), "");
    EXPECT_EQ(deletingLastComponent(""), "");
}

TEST(Paths, appendingPutsExactlyOneSlashBetween) {
    EXPECT_EQ(appending("/a", "b"), "/a/b");
    EXPECT_EQ(appending("/a/", "b"), "/a/b");
    EXPECT_EQ(appending("/a//", "b"), "/a/b");
    EXPECT_EQ(appending("/", "b"), "/b");
    EXPECT_EQ(appending("", "b"), "b");
    EXPECT_EQ(appending("/a", "/b"), "/a/b");
    EXPECT_EQ(appending("/a", "b/c"), "/a/b/c");
}

TEST(Paths, theNormalFormHasNeitherDotsNorDoubledSlashes) {
    EXPECT_EQ(normalized("/a/b/.././/c/"), "/a/c");
    EXPECT_EQ(normalized("/a/.."), "/");
    EXPECT_EQ(normalized("/../../a"), "/a");
    EXPECT_EQ(normalized("/a/..b/.c"), "/a/..b/.c");
    EXPECT_EQ(normalized("/"), "/");
    EXPECT_EQ(normalized("//"), "/");
    EXPECT_EQ(normalized("a/./b/../c"), "a/c");
    EXPECT_EQ(normalized(""), "");
}

TEST(Paths, belowAFolderIsWhatBeginsWithItAndASlash) {
    EXPECT_TRUE(isBelow("/a/b", "/a"));
    EXPECT_TRUE(isBelow("/a/b/c", "/a"));
    EXPECT_TRUE(isBelow("/a", "/"));
    EXPECT_FALSE(isBelow("/", "/"));
    EXPECT_FALSE(isBelow("/a", "/a"));
    EXPECT_FALSE(isBelow("/ab", "/a"));
    EXPECT_FALSE(isBelow("/a", "/a/b"));
    EXPECT_FALSE(isBelow("a", "/"));
}

TEST(Paths, theExtensionIsWhatFollowsTheLastDotAndALeadingDotIsPartOfTheBaseName) {
    EXPECT_EQ(extension("README.TXT"), "TXT");
    EXPECT_EQ(extension("archive.tar.gz"), "gz");
    EXPECT_EQ(extension("Makefile"), "");
    EXPECT_EQ(extension(".profile"), "");
    EXPECT_EQ(extension(".config.bak"), "bak");
    EXPECT_EQ(extension("ends."), "");
}

TEST(Paths, percentEncodingKeepsSlashesAndUnreservedCharacters) {
    EXPECT_EQ(percentEncoded("a b/c~d.e_f-9"), "a%20b/c~d.e_f-9");
    EXPECT_EQ(percentEncoded("100%\n\xFF"), "100%25%0A%FF");
    EXPECT_EQ(percentEncoded(""), "");
}

TEST(Paths, aFileUrlCarriesTheRawBytesPercentEncoded) {
    EXPECT_EQ(fileUrl("/a b/\xFF.txt"), "file:///a%20b/%FF.txt");
    EXPECT_EQ(fileUrl("/100%/q?#"), "file:///100%25/q%3F%23");
    EXPECT_EQ(fileUrl("/A-z_0.9~"), "file:///A-z_0.9~");
}

}  // namespace vantrel::paths
