#include "model/engine/ContentsChange.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace vantrel {
namespace {

using Afterwards = ContentsChange::Afterwards;

FileIdentity folder(std::uint64_t inode) {
    return {.device = 1, .inode = inode};
}

FolderPlace placeOf(const FileIdentity& identity, Ancestry above) {
    return {identity, std::make_shared<const Ancestry>(std::move(above))};
}

TEST(ContentsChange, outdatesTheItemAllBelowItAndEveryFolderAboveByPath) {
    const ContentsChange change({{.path = "/a/b/c"}});
    for (const char* path : {"/", "/a", "/a/b", "/a/b/c", "/a/b/c/d", "/a/b/c/d/e"}) {
        EXPECT_TRUE(change.outdates(path, {})) << path;
    }
    for (const char* path : {"/a/b/cc", "/a/b/x", "/a/bb", "/ab", "/x", "/a/b/c.d"}) {
        EXPECT_FALSE(change.outdates(path, {})) << path;
    }
}

TEST(ContentsChange, isComparedWithoutDotsAndDoubledSlashes) {
    const ContentsChange change({{.path = "/a/b/../c//./d/"}});
    EXPECT_TRUE(change.outdates("/a/c", {}));
    EXPECT_TRUE(change.outdates("/a/c/d/e", {}));
    EXPECT_FALSE(change.outdates("/a/b", {}));
}

TEST(ContentsChange, outdatesAFolderThatHoldsAnItemUnderAnyOtherPath) {
    const ContentsChange change({{.path = "/real/x", .above = {folder(2), folder(1)}}});
    EXPECT_TRUE(change.outdates("/through/a/link", placeOf(folder(2), {folder(8), folder(1)})));
    EXPECT_FALSE(change.outdates("/through/another", placeOf(folder(3), {folder(2), folder(1)})));
}

TEST(ContentsChange, outdatesAnItemAndWhatIsBelowItUnderAnyOtherPath) {
    const ContentsChange change(
        {{.path = "/real/x", .identities = {folder(5), folder(6)}, .above = {folder(2), folder(1)}}});
    EXPECT_TRUE(change.outdates("/link", placeOf(folder(5), {folder(1)})));
    EXPECT_TRUE(change.outdates("/link", placeOf(folder(6), {folder(1)})));
    EXPECT_TRUE(change.outdates("/link/deep", placeOf(folder(9), {folder(7), folder(6), folder(1)})));
    EXPECT_TRUE(change.outdates("/link", {folder(5), nullptr}));
    EXPECT_FALSE(change.outdates("/link", {folder(9), nullptr}));
}

TEST(ContentsChange, takesAwayWhatWasGoneWithAnItemButNoFolderThatHeldIt) {
    const ContentsChange change({{.path = "/a/gone", .afterwards = Afterwards::gone}, {.path = "/a/new"}});
    EXPECT_TRUE(change.takesAway("/a/gone", {}));
    EXPECT_TRUE(change.takesAway("/a/gone/below", {}));
    EXPECT_FALSE(change.takesAway("/a", {}));
    EXPECT_FALSE(change.takesAway("/a/new", {}));
    EXPECT_FALSE(change.takesAway("/elsewhere", {}));
}

TEST(ContentsChange, aFolderIntoWhichAnItemWasMovedIsStillThere) {
    const ContentsChange change({{.path = "/a/x", .afterwards = Afterwards::gone}, {.path = "/a/x/y"}});
    EXPECT_FALSE(change.takesAway("/a/x", {}));
}

TEST(ContentsChange, aRenamingSaysWhereAllBelowTheItemStandsNow) {
    const ContentsChange change({{.path = "/a/x", .afterwards = Afterwards::gone}, {.path = "/b/y"}},
                                ContentsChange::Renaming{"/a/x", "/b/y"});
    EXPECT_EQ(change.newPathOf("/a/x"), "/b/y");
    EXPECT_EQ(change.newPathOf("/a/x/d/e"), "/b/y/d/e");
    EXPECT_EQ(change.newPathOf("/a/xx"), std::nullopt);
    EXPECT_EQ(change.newPathOf("/a"), std::nullopt);
}

}  // namespace
}  // namespace vantrel
