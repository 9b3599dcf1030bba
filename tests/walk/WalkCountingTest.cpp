#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "posix/ReaderCalls.h"
#include "walk/CheckedSum.h"
#include "walk/ForwardingReader.h"
#include "walk/WalkFixture.h"

namespace vantrel::test {
namespace {

const std::string tenThousandBytes(10'000, 'x');

class WalkCounting : public EveryReader {};
VANTREL_FOR_EVERY_READER(WalkCounting);

TEST_P(WalkCounting, addsTheFilesOfAllLevels) {
    folder.makeFolder("a");
    folder.makeFolder("a/b");
    const auto top = allocatedBytes(folder.makeFile("top", tenThousandBytes));
    const auto middle = allocatedBytes(folder.makeFile("a/middle", tenThousandBytes));
    const auto low = allocatedBytes(folder.makeFile("a/b/low", tenThousandBytes));
    EXPECT_EQ(walk(folder.path()), finished(top + middle + low, 3));
}

TEST_P(WalkCounting, givesZeroForAnEmptyFolder) {
    EXPECT_EQ(walk(folder.path()), finished(0, 0));
}

TEST_P(WalkCounting, addsNothingForFolders) {
    folder.makeFolder("a");
    folder.makeFolder("a/b");
    folder.makeFolder("c");
    EXPECT_EQ(walk(folder.path()), finished(0, 0));
}

TEST_P(WalkCounting, takesAllocatedBlocksAndNotTheLength) {
    const std::string path = folder.makeFile("sparse");
    ASSERT_EQ(::truncate(path.c_str(), 1 << 30), 0);
    ASSERT_LT(allocatedBytes(path), 1 << 20) << "this file system has no holes";
    EXPECT_EQ(walk(folder.path()), finished(allocatedBytes(path), 1));
}

TEST_P(WalkCounting, countsAHardLinkEachTime) {
    const std::string path = folder.makeFile("one", tenThousandBytes);
    ASSERT_EQ(::link(path.c_str(), folder.path("two").c_str()), 0);
    EXPECT_EQ(walk(folder.path()), finished(2 * allocatedBytes(path), 2));
}

TEST_P(WalkCounting, includesHiddenNames) {
    folder.makeFolder(".config");
    const auto bytes = allocatedBytes(folder.makeFile(".config/.secret", tenThousandBytes));
    EXPECT_EQ(walk(folder.path()), finished(bytes, 1));
}

TEST_P(WalkCounting, neitherCountsNorFollowsLinks) {
    TemporaryFolder elsewhere;
    elsewhere.makeFile("large", tenThousandBytes);
    const auto bytes = allocatedBytes(folder.makeFile("file", tenThousandBytes));
    folder.makeLink("toFile", "file");
    folder.makeLink("toFolder", elsewhere.path());
    folder.makeLink("toItself", folder.path());
    folder.makeLink("broken", "nowhere");
    folder.makeLink("loop", "loop");
    EXPECT_EQ(walk(folder.path()), finished(bytes, 1));
}

TEST_P(WalkCounting, walksARootThatIsALink) {
    folder.makeFolder("real");
    const auto bytes = allocatedBytes(folder.makeFile("real/file", tenThousandBytes));
    EXPECT_EQ(walk(folder.makeLink("link", "real")), finished(bytes, 1));
}

TEST_P(WalkCounting, countsFifosAndSocketsWithoutOpeningThem) {
    folder.makeFifo("fifo");  // opened, it would hold the walk for ever
    folder.makeSocket("socket");
    EXPECT_EQ(walk(folder.path()), finished(0, 2));
}

TEST_P(WalkCounting, takesEveryName) {
    const std::string longest(255, 'n');
    std::int64_t bytes = 0;
    for (const std::string name : {"line\nbreak", "caf\xE9", "\xFF\xFE", "\x01\x1B[2J", " ", "...", "-rf"})
        bytes += allocatedBytes(folder.makeFile(name, tenThousandBytes));
    folder.makeFolder("\xC3\x28");
    bytes += allocatedBytes(folder.makeFile("\xC3\x28/" + longest, tenThousandBytes));
    folder.makeFolder(longest);
    bytes += allocatedBytes(folder.makeFile(longest + "/...", tenThousandBytes));
    EXPECT_EQ(walk(folder.path()), finished(bytes, 9));
}

TEST_P(WalkCounting, saysWhenTheRootDoesNotExist) {
    EXPECT_EQ(walk(folder.path("nothing")), (WalkRecord::End{WalkOutcome::rootUnreadable, {0, 0}}));
}

TEST_P(WalkCounting, saysWhenTheRootIsNoFolder) {
    EXPECT_EQ(walk(folder.makeFile("file", "x")), (WalkRecord::End{WalkOutcome::rootUnreadable, {0, 0}}));
    EXPECT_EQ(walk(folder.makeFifo("fifo")), (WalkRecord::End{WalkOutcome::rootUnreadable, {0, 0}}));
    EXPECT_EQ(walk(""), (WalkRecord::End{WalkOutcome::rootUnreadable, {0, 0}}));
}

TEST_P(WalkCounting, doesNotTakeARootWithAZeroByteForAShorterOne) {
    EXPECT_EQ(walk(folder.path() + std::string("\0x", 2)),
              (WalkRecord::End{WalkOutcome::rootUnreadable, {0, 0}}));
}

TEST_P(WalkCounting, skipsUnreadableFolders) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may read every folder";
    folder.makeFolder("closed");
    folder.makeFile("closed/file", tenThousandBytes);
    ::chmod(folder.path("closed").c_str(), 0);
    const auto bytes = allocatedBytes(folder.makeFile("open", tenThousandBytes));
    EXPECT_EQ(walk(folder.path()), finished(bytes, 1));
    EXPECT_EQ(walk(folder.path("closed")), (WalkRecord::End{WalkOutcome::rootUnreadable, {0, 0}}));
}

TEST_P(WalkCounting, asksForTheKindsThatTheDirectoryDoesNotGive) {
    folder.makeFolder("a");
    folder.makeFolder("a/b");
    folder.makeLink("a/link", "b");
    const auto bytes = allocatedBytes(folder.makeFile("a/b/file", tenThousandBytes));
    auto silent = options();
    silent.makeReader = disturbed<SilentAboutKinds>(GetParam());
    EXPECT_EQ(walk(folder.path(), silent), finished(bytes, 1));
}

TEST_P(WalkCounting, measuresEachFileOnceAndFoldersAndLinksNever) {
    folder.makeFolder("a");
    folder.makeFolder("a/b");
    folder.makeFolder("c");
    folder.makeLink("link", "c");
    folder.makeFile("a/one");
    folder.makeFile("a/b/two");
    CountingReader::Counts counts;
    auto counting = options();
    counting.makeReader = disturbed<CountingReader>(GetParam(), &counts);
    EXPECT_EQ(walk(folder.path(), counting), finished(0, 2));
    EXPECT_EQ(counts.roots, 1);
    EXPECT_EQ(counts.folders, 3);
    EXPECT_EQ(counts.reopened, 0);
    EXPECT_EQ(counts.measures, 2);
}

// Removes each file between the moment when it is listed and the moment when it is measured.
class Vanishing final : public ForwardingReader {
public:
    using ForwardingReader::ForwardingReader;
    std::error_code measure(int folder, const char* name, walking::Measure& measure) override {
        if (name[0] == 'v') ::unlinkat(folder, name, 0);
        return ForwardingReader::measure(folder, name, measure);
    }
    Result<FileDescriptor> openFolder(int parent, const char* name, walking::Volume& volume) override {
        if (name[0] == 'v') ::unlinkat(parent, name, AT_REMOVEDIR);
        return ForwardingReader::openFolder(parent, name, volume);
    }
};

TEST_P(WalkCounting, skipsWhatVanishesUnderItsHands) {
    folder.makeFile("v1", tenThousandBytes);
    folder.makeFolder("v2");
    folder.makeFile("v3", tenThousandBytes);
    const auto bytes = allocatedBytes(folder.makeFile("stays", tenThousandBytes));
    auto vanishing = options();
    vanishing.makeReader = disturbed<Vanishing>(GetParam());
    EXPECT_EQ(walk(folder.path(), vanishing), finished(bytes, 1));
}

// Puts a link to another folder in the place of each folder that is about to be opened.
class ReplacingByLinks final : public ForwardingReader {
public:
    ReplacingByLinks(std::unique_ptr<DirectoryReader> real, std::string target)
        : ForwardingReader(std::move(real)), target_(std::move(target)) {}
    Result<FileDescriptor> openFolder(int parent, const char* name, walking::Volume& volume) override {
        ::unlinkat(parent, name, AT_REMOVEDIR);
        EXPECT_EQ(::symlinkat(target_.c_str(), parent, name), 0);
        return ForwardingReader::openFolder(parent, name, volume);
    }

private:
    std::string target_;
};

TEST_P(WalkCounting, isNotLedAwayByALinkPutInTheFoldersPlace) {
    TemporaryFolder elsewhere;
    elsewhere.makeFile("large", tenThousandBytes);
    folder.makeFolder("a");
    auto replacing = options();
    replacing.makeReader = disturbed<ReplacingByLinks>(GetParam(), elsewhere.path());
    EXPECT_EQ(walk(folder.path(), replacing), finished(0, 0));
}

TEST(WalkTotalsDeathTest, anOverflowOfBytesStopsTheProgram) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    WalkTotals totals{9'223'372'036'854'775'807, 1};
    EXPECT_DEATH(addChecked(totals, {1, 0}), "does not fit into 64 bits");
}

TEST(WalkTotalsDeathTest, anOverflowOfItemsStopsTheProgram) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    WalkTotals totals{0, 9'223'372'036'854'775'807};
    EXPECT_DEATH(addChecked(totals, {512, 1}), "does not fit into 64 bits");
}

TEST(WalkTotals, reachTheLargestNumber) {
    WalkTotals totals{9'223'372'036'854'775'806, 9'223'372'036'854'775'806};
    addChecked(totals, {1, 1});
    EXPECT_EQ(totals, (WalkTotals{9'223'372'036'854'775'807, 9'223'372'036'854'775'807}));
}

TEST(OpenInPieces, cutsAtSlashesAndNeverInsideAName) {
    const auto piecesOf = [](const std::string& path, std::size_t longest) {
        std::vector<std::string> pieces;
        const auto opened = walking::openInPieces(AT_FDCWD, path, longest, [&](int, const char* piece) {
            pieces.emplace_back(piece);
            return Result<FileDescriptor>(FileDescriptor(::open("/", O_RDONLY | O_CLOEXEC)));
        });
        EXPECT_TRUE(opened);
        return pieces;
    };
    using Pieces = std::vector<std::string>;
    EXPECT_EQ(piecesOf("aa/bb/cc", 100), (Pieces{"aa/bb/cc"}));
    EXPECT_EQ(piecesOf("aa/bb/cc", 5), (Pieces{"aa/bb", "cc"}));
    EXPECT_EQ(piecesOf("aa/bb/cc", 4), (Pieces{"aa", "bb", "cc"}));
    EXPECT_EQ(piecesOf("aa/bb/cc", 0), (Pieces{"aa", "bb", "cc"}));
    EXPECT_EQ(piecesOf("longer/b", 3), (Pieces{"longer", "b"}));
    EXPECT_EQ(piecesOf("a", 0), (Pieces{"a"}));
    EXPECT_EQ(piecesOf(".", 0), (Pieces{"."}));
}

}  // namespace
}  // namespace vantrel::test
