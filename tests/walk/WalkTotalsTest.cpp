#include <unistd.h>

#include <cstdint>
#include <limits>

#include "posix/ReaderCalls.h"
#include "posix/files/PosixFileManager.h"
#include "support/PanelFixture.h"
#include "support/RecordingCanvas.h"
#include "walk/ForwardingReader.h"
#include "walk/WalkFixture.h"

// The sum is checked: only a total that no 64 bits can hold stops the program.

namespace vantrel::test {
namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

/// A file system that says how much each file takes.
class Saying final : public ForwardingReader {
public:
    Saying(std::unique_ptr<DirectoryReader> real, std::int64_t first, std::int64_t others)
        : ForwardingReader(std::move(real)), first_(first), others_(others) {}
    std::error_code measure(int folder, const char* name, walking::Measure& measure) override {
        const std::error_code error = ForwardingReader::measure(folder, name, measure);
        measure.bytes = name[0] == '1' ? first_ : others_;
        return error;
    }

private:
    std::int64_t first_;
    std::int64_t others_;
};

class WalkTotals64 : public EveryReader {
protected:
    std::optional<WalkRecord::End> walkSaying(std::int64_t first, std::int64_t others) {
        auto saying = options();
        saying.makeReader = disturbed<Saying>(GetParam(), first, others);
        return walk(folder.path(), saying);
    }
};
VANTREL_FOR_EVERY_READER(WalkTotals64);

TEST_P(WalkTotals64, theLargestPossibleTotalIsATotalLikeAnyOther) {
    folder.makeFolder("a");
    for (const char* const name : {"1", "2", "a/3"}) folder.makeFile(name);
    EXPECT_EQ(walkSaying(most - 2, 1), finished(most, 3));
}

TEST_P(WalkTotals64, oneByteMoreStopsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    folder.makeFolder("a");
    for (const char* const name : {"1", "2", "a/3"}) folder.makeFile(name);
    EXPECT_DEATH(walkSaying(most - 1, 1), "a folder's size does not fit into 64 bits");
}

TEST_P(WalkTotals64, sparseFilesWhoseLengthsPass64BitsAddUpToWhatTheyTake) {
    const TemporaryFolder place(quickPlace());
    for (const char* const name : {"1", "2", "3"}) {
        if (::truncate(place.makeFile(name).c_str(), off_t{1} << 62) != 0)
            GTEST_SKIP() << "no files of 4 EiB here";
    }
    EXPECT_EQ(walk(place.path()), finished(0, 3));
}

TEST(MeasureOf, takesTheLengthWhereTheNumberOfBlocksIsNone) {
    struct stat status {};
    status.st_mode = S_IFREG;
    status.st_size = 1000;
    status.st_blocks = 8;
    EXPECT_EQ(walking::measureOf(status).bytes, 4096);
    status.st_blocks = most / 512;
    EXPECT_EQ(walking::measureOf(status).bytes, most / 512 * 512);
    for (const blkcnt_t blocks : {most / 512 + 1, most, std::int64_t{-1}}) {
        status.st_blocks = blocks;
        EXPECT_EQ(walking::measureOf(status).bytes, 1000) << blocks;
    }
    status.st_size = -1;
    EXPECT_EQ(walking::measureOf(status).bytes, 0);
}

class SparseFilesInAPanel : public PanelTest {};

TEST_F(SparseFilesInAPanel, areShownAndSortedWhateverTheirSum) {
    const TemporaryFolder place(quickPlace());
    for (const char* const name : {"1", "2", "3"}) {
        if (::truncate(place.makeFile(name).c_str(), (off_t{1} << 62) + name[0]) != 0)
            GTEST_SKIP() << "no files of 4 EiB here";
    }
    PosixFileManager files;
    const auto real = OvPanelView::make(desktop.portsWith(files), *desktop.engine);
    real->setFrame({0, 0, 549, 648});
    real->setCurrentPath(place.path());
    real->setSortField(SortField::size);
    RecordingCanvas canvas;
    real->drawTree(canvas);
    EXPECT_EQ(real->items()[1]->name, "3");
    EXPECT_EQ(real->items()[1]->size, (std::int64_t{1} << 62) + '3');
}

}  // namespace
}  // namespace vantrel::test
