#include "app/AppDelegate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/FakeDesktop.h"
#include "theme/OvPalette.h"

namespace vantrel {
namespace {

using testing::Optional;

class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest() {
        for (const char* folder : {"/start", "/Users/ann", "/data", "/Users/ann/Music", "/start/inside"}) {
            desktop.files.addFile(folder, "x");
        }
    }

    AppDelegate& launched(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "vantrel");
        delegate.emplace(desktop.ports(), *desktop.engine, arguments);
        delegate->applicationDidFinishLaunching();
        return *delegate;
    }

    std::string leftPath() { return delegate->commanderView().leftPanel().currentPath(); }
    std::string rightPath() { return delegate->commanderView().rightPanel().currentPath(); }

    test::FakeDesktop desktop;
    std::optional<AppDelegate> delegate;
};

TEST_F(AppDelegateTest, theWindowHasItsTitleSizesAndBlueGround) {
    launched({});
    const WindowOptions& options = desktop.application.window->options;
    EXPECT_EQ(options.title, "Vantrel - Orvane");
    EXPECT_EQ(options.contentSize, (Size{1100, 720}));
    EXPECT_EQ(options.minimumContentSize, (Size{800, 500}));
    EXPECT_EQ(options.background, OvPalette::dosBlue);
    EXPECT_TRUE(desktop.application.window->isShown);
}

TEST_F(AppDelegateTest, theCommanderFillsTheWindow) {
    launched({});
    EXPECT_EQ(desktop.application.window->content.get(), &delegate->commanderView());
    EXPECT_EQ(delegate->commanderView().frame(), (Rect{0, 0, 1100, 720}));
}

TEST_F(AppDelegateTest, withoutArgumentsBothPanelsOpenTheirDefaults) {
    const AppDelegate& app = launched({});
    EXPECT_EQ(app.initialLeftPath(), std::nullopt);
    EXPECT_EQ(app.initialRightPath(), std::nullopt);
    EXPECT_EQ(leftPath(), "/start");
    EXPECT_EQ(rightPath(), "/Users/ann");
}

TEST_F(AppDelegateTest, oneArgumentOpensTheLeftPanelOnly) {
    launched({"/data"});
    EXPECT_EQ(leftPath(), "/data");
    EXPECT_EQ(rightPath(), "/Users/ann");
}

TEST_F(AppDelegateTest, twoArgumentsOpenBothAndFurtherOnesAreIgnored) {
    launched({"/data", "/start", "/Users/ann/Music"});
    EXPECT_EQ(leftPath(), "/data");
    EXPECT_EQ(rightPath(), "/start");
}

TEST_F(AppDelegateTest, aLeadingTildeIsTheHomeFolder) {
    EXPECT_THAT(launched({"~/Music"}).initialLeftPath(), Optional(std::string("/Users/ann/Music")));
    EXPECT_EQ(leftPath(), "/Users/ann/Music");
    EXPECT_EQ(rightPath(), "/Users/ann");
    EXPECT_THAT(launched({"~"}).initialLeftPath(), Optional(std::string("/Users/ann")));
}

TEST_F(AppDelegateTest, aTildeWithANameIsThatUsersHomeFolderWhereThereIsOne) {
    desktop.process.homes["bob"] = "/data";
    EXPECT_THAT(launched({"~bob"}).initialLeftPath(), Optional(std::string("/data")));
    EXPECT_THAT(launched({"~bob/x"}).initialLeftPath(), Optional(std::string("/data/x")));
    EXPECT_THAT(launched({"~nobody/x"}).initialLeftPath(), Optional(std::string("~nobody/x")));
    EXPECT_EQ(leftPath(), "/start");
}

TEST_F(AppDelegateTest, aTildeElsewhereIsAnOrdinaryCharacter) {
    EXPECT_THAT(launched({"/data/~"}).initialLeftPath(), Optional(std::string("/data/~")));
}

TEST_F(AppDelegateTest, aFirstPathThatDoesNotExistIsIgnoredAndTheSecondOneOpens) {
    launched({"/no such folder", "/data"});
    EXPECT_EQ(leftPath(), "/start");
    EXPECT_EQ(rightPath(), "/data");
    EXPECT_TRUE(desktop.output.lines.empty());
}

TEST_F(AppDelegateTest, anEmptyArgumentNamesNothing) {
    launched({"", "/data"});
    EXPECT_EQ(leftPath(), "/start");
    EXPECT_EQ(rightPath(), "/data");
}

TEST_F(AppDelegateTest, aRelativePathIsMadeAbsolute) {
    launched({"inside"});
    EXPECT_EQ(leftPath(), "/start/inside");
}

TEST_F(AppDelegateTest, aRelativePathNamesNothingWhenTheWorkingFolderIsGone) {
    desktop.process.isCurrentDirectoryGone = true;
    desktop.files.addFile("/", "x");
    desktop.files.addFile("/inside", "x");
    launched({"inside", "/data"});
    EXPECT_EQ(leftPath(), "/");
    EXPECT_EQ(rightPath(), "/data");
    EXPECT_TRUE(desktop.output.lines.empty());
}

TEST_F(AppDelegateTest, existenceIsEnoughSoAPlainFilePassesAndListsAsUnreadable) {
    launched({"/data/x"});
    EXPECT_EQ(leftPath(), "/data/x");
    ASSERT_EQ(desktop.output.lines.size(), 1U);
    EXPECT_THAT(desktop.output.lines[0], testing::StartsWith("Error reading directory /data/x: "));
}

TEST_F(AppDelegateTest, aCommandBeforeTheLaunchStopsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    delegate.emplace(desktop.ports(), *desktop.engine, std::vector<std::string>{"vantrel"});
    EXPECT_DEATH(delegate->refreshPanels(), "before the launch");
}

TEST_F(AppDelegateTest, closingTheWindowEndsTheProgram) {
    launched({});
    EXPECT_TRUE(desktop.application.window->shouldClose());
    EXPECT_EQ(desktop.application.terminations, 1);
}

}  // namespace
}  // namespace vantrel
