#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

#include "app/AppDelegate.h"
#include "support/FakeDesktop.h"

namespace vantrel {
namespace {

using testing::ElementsAre;

class MainMenuTest : public testing::Test {
protected:
    MainMenuTest() {
        desktop.files.addFile("/start", "alpha", 5);
        desktop.files.addFolder("/Users/ann", "music");
        app.applicationDidFinishLaunching();
    }

    std::vector<std::string> linesOf(const std::string& title) {
        std::vector<std::string> lines;
        for (const MenuItem& item : menu(title).items) {
            if (item.isSeparator()) {
                lines.push_back("-");
            } else {
                lines.push_back(item.title +
                                (item.keyEquivalent.empty() ? "" : " [" + item.keyEquivalent + "]"));
            }
        }
        return lines;
    }

    void choose(const std::string& title) {
        for (const Menu& menu : desktop.application.mainMenu) {
            for (const MenuItem& item : menu.items) {
                if (item.title == title) return item.action();
            }
        }
        FAIL() << "no item " << title;
    }

    const Menu& menu(const std::string& title) {
        for (const Menu& candidate : desktop.application.mainMenu) {
            if (candidate.title == title) return candidate;
        }
        ADD_FAILURE() << "no menu " << title;
        return desktop.application.mainMenu.front();
    }

    template <class Kind>
    bool isOpen() {
        const auto& overlay = commander().dialogOverlay();
        return overlay && std::holds_alternative<Kind>(overlay->dialogType());
    }

    OvCommanderView& commander() { return app.commanderView(); }
    OvPanelView& left() { return commander().leftPanel(); }
    OvPanelView& right() { return commander().rightPanel(); }

    test::FakeDesktop desktop;
    AppDelegate app{desktop.ports(), *desktop.engine, {"vantrel"}};
};

TEST_F(MainMenuTest, theMenusStandInTheirOrderAndTheFirstIsTheProgramsOwn) {
    std::vector<std::string> titles;
    for (const Menu& menu : desktop.application.mainMenu) titles.push_back(menu.title);
    EXPECT_THAT(titles, ElementsAre("Vantrel", "File", "View", "Commands", "Help"));
}

TEST_F(MainMenuTest, everyMenuHasItsItemsSeparatorsAndKeyEquivalents) {
    EXPECT_THAT(linesOf("Vantrel"), ElementsAre("About Vantrel", "-", "Quit Vantrel [q]"));
    EXPECT_THAT(linesOf("File"),
                ElementsAre("QuickLook Preview [ ]", "View File (Retro)", "Edit File", "-",
                            "Copy to Other Panel", "Move / Rename", "Make Directory...", "Delete to Trash",
                            "-", "Reveal in Finder [o]", "Open in Terminal [t]"));
    EXPECT_THAT(linesOf("View"), ElementsAre("Toggle Size Mode (Human-Readable / Bytes)",
                                             "Toggle Hidden Files [.]", "Refresh Panels [r]"));
    EXPECT_THAT(linesOf("Commands"),
                ElementsAre("Switch Panel (Tab) [\t]", "-", "Sort by Name [1]",
                            "Sort by Size (Largest first) [2]", "Sort by Date [3]", "Sort by Extension [4]"));
    EXPECT_THAT(linesOf("Help"), ElementsAre("Orvane Keyboard Reference"));
}

TEST_F(MainMenuTest, aboutIsAnAlertWithOneButton) {
    choose("About Vantrel");
    ASSERT_EQ(desktop.application.alerts.size(), 1U);
    const Alert& alert = desktop.application.alerts[0];
    EXPECT_EQ(alert.messageText, "Vantrel Commander");
    EXPECT_THAT(
        alert.informativeText,
        testing::MatchesRegex("Legendary Orvane style dual-pane file manager for macOS with automatic "
                              "recursive folder size calculation\\.\n\n[^\n]+"));
    EXPECT_EQ(alert.button, "OK");
}

TEST_F(MainMenuTest, quitEndsTheProgram) {
    choose("Quit Vantrel");
    EXPECT_EQ(desktop.application.terminations, 1);
}

TEST_F(MainMenuTest, forwardingItemsDoWhatTheirKeysDo) {
    choose("Copy to Other Panel");
    EXPECT_TRUE(isOpen<dialog::Copy>());
    choose("Move / Rename");
    EXPECT_TRUE(isOpen<dialog::Move>());
    choose("Make Directory...");
    EXPECT_TRUE(isOpen<dialog::Mkdir>());
    choose("Delete to Trash");
    EXPECT_TRUE(isOpen<dialog::Delete>());
    choose("Orvane Keyboard Reference");
    EXPECT_TRUE(isOpen<dialog::Help>());
    choose("View File (Retro)");
    EXPECT_TRUE(isOpen<dialog::Viewer>());
    commander().keyDown({.key = Key::escape});
    choose("QuickLook Preview");
    EXPECT_TRUE(desktop.preview.isVisible());
    choose("Edit File");
    EXPECT_THAT(desktop.workspace.calls, ElementsAre("open /start/alpha"));
    choose("Switch Panel (Tab)");
    EXPECT_EQ(&commander().activePanel(), &right());
    choose("Toggle Size Mode (Human-Readable / Bytes)");
    EXPECT_EQ(left().sizeDisplayMode(), SizeDisplayMode::rawBytes);
    EXPECT_EQ(right().sizeDisplayMode(), SizeDisplayMode::rawBytes);
}

TEST_F(MainMenuTest, sortItemsSetTheActivePanelsFieldAndLeaveItsDirectionAndTheOtherPanelAlone) {
    left().setSortDirection(SortDirection::descending);
    choose("Sort by Size (Largest first)");
    EXPECT_EQ(left().sortField(), SortField::size);
    EXPECT_EQ(left().sortDirection(), SortDirection::descending);
    EXPECT_EQ(right().sortField(), SortField::name);
    choose("Sort by Date");
    EXPECT_EQ(left().sortField(), SortField::date);
    choose("Sort by Extension");
    EXPECT_EQ(left().sortField(), SortField::ext);
    choose("Sort by Name");
    EXPECT_EQ(left().sortField(), SortField::name);
}

TEST_F(MainMenuTest, hiddenFilesAreFlippedInEachPanelByItself) {
    left().setShowHiddenFiles(true);
    choose("Toggle Hidden Files");
    EXPECT_FALSE(left().showHiddenFiles());
    EXPECT_TRUE(right().showHiddenFiles());
    choose("Toggle Hidden Files");
    EXPECT_TRUE(left().showHiddenFiles());
    EXPECT_FALSE(right().showHiddenFiles());
}

TEST_F(MainMenuTest, refreshReadsTheLeftAndThenTheRightPanelAndKeepsNoSelection) {
    desktop.files.addFile("/start", "beta");
    left().loadDirectory("beta");
    desktop.files.listedFolders.clear();
    choose("Refresh Panels");
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/start", "/Users/ann"));
    EXPECT_EQ(left().selectedItem()->name, "alpha");
}

TEST_F(MainMenuTest, revealAndTerminalGetTheActivePanelsFolderAlsoWithTheCursorOnTheParentRow) {
    left().home();
    choose("Reveal in Finder");
    commander().toggleActivePanel();
    choose("Open in Terminal");
    EXPECT_THAT(desktop.workspace.calls, ElementsAre("reveal /start", "terminal /Users/ann"));
}

}  // namespace
}  // namespace vantrel
