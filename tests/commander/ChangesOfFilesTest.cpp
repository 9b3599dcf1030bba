#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support/CommanderFixture.h"

// What the commands make of the totals on show and of those that are remembered.

namespace vantrel {
namespace {

class ChangesOfFiles : public test::CommanderTest {
protected:
    void finishAll(std::int64_t bytes) {
        desktop.walks.finishAll({bytes, 1});
        desktop.mainQueue.runAll();
    }

    void know(const std::string& path) {
        desktop.engine->calculateVantrel(path, [](std::int64_t, std::int64_t, bool) {});
        finishAll(100);
    }

    bool isKnown(const std::string& path) { return desktop.engine->cachedSize(path).has_value(); }

    void answer(Key key, const std::string& input) {
        press(key);
        desktop.mainQueue.runAll();
        desktop.textFields.alive.back()->type(input);
        press(Key::returnKey);
    }

    static std::int64_t sizeOf(OvPanelView& panel, const std::string& name) {
        const auto row = std::ranges::find(panel.items(), name, [](const auto& item) { return item->name; });
        return (*row)->effectiveSize();
    }
};

TEST_F(ChangesOfFiles, aCopyOutdatesItsTargetAndTheFoldersAboveAlsoWhenItFails) {
    desktop.files.addFolder("/t", "deep");
    for (const auto& error : {std::make_error_code(std::errc::no_space_on_device), std::error_code()}) {
        desktop.files.operationError = error;
        for (const char* path : {"/", "/t", "/t/deep", "/t/other", "/start"}) know(path);
        left().loadDirectory("cedar.txt");
        answer(Key::f5, "/t/deep/copy");
        for (const char* path : {"/", "/t", "/t/deep"}) EXPECT_FALSE(isKnown(path)) << path;
        for (const char* path : {"/t/other", "/start"}) EXPECT_TRUE(isKnown(path)) << path;
    }
}

TEST_F(ChangesOfFiles, aRelativeTargetOfACopyCountsFromTheProcessFolder) {
    know("/start/alpha");
    left().loadDirectory("cedar.txt");
    answer(Key::f5, "alpha/copy");
    EXPECT_FALSE(isKnown("/start/alpha"));
}

TEST_F(ChangesOfFiles, aMoveOutdatesTheFoldersAboveBothPlacesAlsoWhenItFails) {
    desktop.files.addFolder("/start/beta", "x");
    for (const auto& error : {std::make_error_code(std::errc::io_error), std::error_code()}) {
        desktop.files.operationError = error;
        for (const char* path : {"/", "/start", "/start/alpha", "/start/beta", "/start/beta/x", "/z"})
            know(path);
        left().loadDirectory("alpha");
        answer(Key::f6, "beta/x/alpha");
        for (const char* path : {"/", "/start", "/start/alpha", "/start/beta", "/start/beta/x"}) {
            EXPECT_FALSE(isKnown(path)) << path;
        }
        EXPECT_TRUE(isKnown("/z"));
    }
}

TEST_F(ChangesOfFiles, aNewFolderOutdatesTheFoldersAbove) {
    for (const char* path : {"/", "/start", "/start/alpha", "/start/beta"}) know(path);
    answer(Key::f7, "alpha/new/inner");
    for (const char* path : {"/", "/start", "/start/alpha"}) EXPECT_FALSE(isKnown(path)) << path;
    EXPECT_TRUE(isKnown("/start/beta"));
}

TEST_F(ChangesOfFiles, theTrashOutdatesTheFoldersAboveTheItemAndTheTrashAlsoWhenItFails) {
    desktop.files.trashFolders = {"/Users/ann/Trash/files", "/Users/ann/Trash/info"};
    for (const auto& error : {std::make_error_code(std::errc::permission_denied), std::error_code()}) {
        desktop.files.operationError = error;
        for (const char* path : {"/start/alpha", "/start/alpha/x", "/start/beta", "/Users/ann/Trash/files",
                                 "/Users/ann/Trash/info", "/Users/ann", "/Users/ann/delta"}) {
            know(path);
        }
        left().loadDirectory("alpha");
        press(Key::f8);
        press(Key::returnKey);
        for (const char* path : {"/start/alpha", "/start/alpha/x", "/Users/ann/Trash/files",
                                 "/Users/ann/Trash/info", "/Users/ann"}) {
            EXPECT_FALSE(isKnown(path)) << path;
        }
        EXPECT_TRUE(isKnown("/start/beta"));
        EXPECT_TRUE(isKnown("/Users/ann/delta"));
    }
}

TEST_F(ChangesOfFiles, theRowsOfThePanelThatIsNotLoadedAnewBecomeRightByThemselves) {
    desktop.files.addFolder("/Users/ann", "sub");
    desktop.files.addFolder("/Users/ann", "far");
    desktop.files.addFile("/Users/ann/sub", "file");
    left().setCurrentPath("/Users/ann/sub");
    right().loadDirectory();
    finishAll(100);
    const std::size_t walks = desktop.walks.walks.size();
    left().loadDirectory("file");
    press(Key::f8);
    press(Key::returnKey);
    ASSERT_EQ(desktop.walks.walks.size(), walks + 1);
    EXPECT_EQ(desktop.walks.walks.back().root, "/Users/ann/sub");
    finishAll(60);
    EXPECT_EQ(sizeOf(right(), "sub"), 60);
    EXPECT_EQ(sizeOf(right(), "far"), 100);
}

TEST_F(ChangesOfFiles, aCopyIntoAFolderOfTheActivePanelShowsInItsRow) {
    finishAll(100);
    left().loadDirectory("cedar.txt");
    finishAll(100);
    answer(Key::f5, "/start/alpha/copy");
    finishAll(160);
    EXPECT_EQ(sizeOf(left(), "alpha"), 160);
    EXPECT_EQ(sizeOf(left(), "beta"), 100);
}

TEST_F(ChangesOfFiles, aFolderThatKeptItsIdentityTakesItsTotalsAlong) {
    desktop.files.tellsIdentities = true;
    for (const char* path : {"/start/alpha", "/start/alpha/x"}) know(path);
    left().loadDirectory("alpha");
    answer(Key::f6, "new");
    EXPECT_TRUE(isKnown("/start/new"));
    EXPECT_TRUE(isKnown("/start/new/x"));
    EXPECT_FALSE(isKnown("/start/alpha"));
}

TEST_F(ChangesOfFiles, aFolderThatCouldNotBeRenamedTakesNothingAlong) {
    desktop.files.tellsIdentities = true;
    desktop.files.operationError = std::make_error_code(std::errc::io_error);
    know("/start/alpha");
    left().loadDirectory("alpha");
    answer(Key::f6, "new");
    EXPECT_FALSE(isKnown("/start/new"));
    EXPECT_FALSE(isKnown("/start/alpha"));
}

}  // namespace
}  // namespace vantrel
