#include "panel/SizeRequests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FakeDesktop.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<FileItem> folderAt(const std::string& path) {
    return std::make_shared<FileItem>(FileItemFields{.name = path, .path = path, .isDirectory = true});
}

class RecordingDelegate final : public SizeRequestsDelegate {
public:
    void sizeDidChange(FileItem& row) override { changed.push_back(row.path); }
    std::vector<std::string> changed;
};

class SizeRequestsTest : public testing::Test {
protected:
    SizeRequestsTest() { requests.delegate = delegate; }

    test::FakeDesktop desktop;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    SizeRequests requests{*desktop.engine};
};

TEST_F(SizeRequestsTest, foldersAreAskedForInTheirOrderAndNothingElseIs) {
    const auto file = std::make_shared<FileItem>(
        FileItemFields{.name = "f", .path = "/d/f", .vantrelState = state::Parent{}});
    const auto parent = std::make_shared<FileItem>(FileItem::parentDirectory("/d"));
    requests.askFor({parent, folderAt("/d/z"), file, folderAt("/d/a")});
    EXPECT_THAT(desktop.walks.roots(), ElementsAre("/d/z", "/d/a"));
    EXPECT_EQ(file->vantrelState, VantrelState(state::Parent{}));
    EXPECT_TRUE(requests.areAwaited());
}

TEST_F(SizeRequestsTest, aReportIsStoredInItsRowBeforeTheDelegateHearsOfIt) {
    const auto row = folderAt("/d/a");
    requests.askFor({row});
    desktop.walks.walkOf("/d/a").finish({30, 3});
    EXPECT_THAT(delegate->changed, IsEmpty());
    EXPECT_TRUE(requests.areAwaited());
    desktop.mainQueue.runAll();
    EXPECT_THAT(delegate->changed, ElementsAre("/d/a"));
    EXPECT_EQ(row->vantrelState, VantrelState(state::Calculated{30, 3}));
    EXPECT_FALSE(requests.areAwaited());
}

TEST_F(SizeRequestsTest, withoutADelegateAReportIsDropped) {
    const auto row = folderAt("/d/a");
    requests.askFor({row});
    delegate.reset();
    desktop.walks.walkOf("/d/a").finish({30, 3});
    desktop.mainQueue.runAll();
    EXPECT_EQ(row->vantrelState, VantrelState(state::Calculating{0, 0}));
}

TEST_F(SizeRequestsTest, rowsOfAnEarlierListAreOwedNothing) {
    requests.askFor({folderAt("/d/a")});
    requests.askFor({});
    EXPECT_FALSE(requests.areAwaited());
    desktop.walks.walkOf("/d/a").finish({30, 3});
    desktop.mainQueue.runAll();
    EXPECT_THAT(delegate->changed, IsEmpty());
}

TEST_F(SizeRequestsTest, onlyWhatCanReportNoMoreIsAskedForAgain) {
    requests.askFor({folderAt("/d/a"), folderAt("/d/b"), folderAt("/d/c")});
    desktop.engine->cancelFor("/d/a");
    desktop.walks.walkOf("/d/b").finish({30, 3});  // its report waits in the main queue
    requests.askAgain();
    EXPECT_THAT(desktop.walks.roots(), ElementsAre("/d/a", "/d/b", "/d/c", "/d/a"));
}

}  // namespace
}  // namespace vantrel
