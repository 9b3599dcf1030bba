#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/RealFilesWindow.h"
#include "support/ScopedEnvironment.h"

// Keys in, file system out: the commands on a real folder.

namespace vantrel {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::StartsWith;

class OvCommanderViewRealFiles : public testing::Test, protected test::RealFilesWindow {
protected:
    OvCommanderViewRealFiles() {
        makeALetterAndAFolder();
        open();
    }

    void select(const std::string& name) { commander->leftPanel().loadDirectory(name); }

    void answer(Key key, const std::string& input) {
        press(key);
        desktop.mainQueue.runAll();
        desktop.textFields.alive.back()->type(input);
        press(Key::returnKey);
    }

    bool exists(const std::string& name) { return fs::exists(fs::symlink_status(folder.path(name))); }

    static bool lists(OvPanelView& panel, const std::string& name) {
        for (const auto& item : panel.items()) {
            if (item->name == name) return true;
        }
        return false;
    }

    std::string selectedName() { return commander->leftPanel().selectedItem()->name; }
};

TEST_F(OvCommanderViewRealFiles, aConfirmedCopyStandsInTheOtherPanelsFolderAndIsListedThere) {
    select("a.txt");
    press(Key::f5);
    EXPECT_EQ(desktop.textFields.alive.back()->text(), folder.path("y/a.txt"));
    press(Key::returnKey);
    EXPECT_EQ(test::contentOf(folder.path("y/a.txt")), "the letter");
    EXPECT_EQ(test::contentOf(folder.path("x/a.txt")), "the letter");
    EXPECT_TRUE(lists(commander->rightPanel(), "a.txt"));
}

TEST_F(OvCommanderViewRealFiles, aFolderIsCopiedWithAllItHolds) {
    select("sub");
    press(Key::f5);
    press(Key::returnKey);
    EXPECT_EQ(test::contentOf(folder.path("y/sub/inner")), "deep");
}

TEST_F(OvCommanderViewRealFiles, aCopyOntoAnExistingFolderFailsSilently) {
    select("a.txt");
    answer(Key::f5, folder.path("y"));
    EXPECT_TRUE(fs::is_directory(folder.path("y")));
    EXPECT_THAT(fs::is_empty(folder.path("y")), true);
    EXPECT_THAT(desktop.output.lines, IsEmpty());
}

TEST_F(OvCommanderViewRealFiles, aCopyNeverReplacesAFile) {
    folder.makeFile("y/a.txt", "mine");
    select("a.txt");
    press(Key::f5);
    press(Key::returnKey);
    EXPECT_EQ(test::contentOf(folder.path("y/a.txt")), "mine");
}

TEST_F(OvCommanderViewRealFiles, aRenamedFileKeepsItsFolderAndTheCursorFollowsIt) {
    select("a.txt");
    answer(Key::f6, "b.txt");
    EXPECT_FALSE(exists("x/a.txt"));
    EXPECT_EQ(test::contentOf(folder.path("x/b.txt")), "the letter");
    EXPECT_EQ(selectedName(), "b.txt");
}

TEST_F(OvCommanderViewRealFiles, aRenameNeverReplacesAnything) {
    folder.makeFile("x/b.txt", "mine");
    select("a.txt");
    answer(Key::f6, "b.txt");
    EXPECT_EQ(test::contentOf(folder.path("x/b.txt")), "mine");
    EXPECT_EQ(test::contentOf(folder.path("x/a.txt")), "the letter");
}

TEST_F(OvCommanderViewRealFiles, aRenameToASlashPathWhoseFolderDoesNotExistFailsSilently) {
    select("a.txt");
    answer(Key::f6, "/no such folder/b.txt");
    EXPECT_EQ(test::contentOf(folder.path("x/a.txt")), "the letter");
    EXPECT_THAT(desktop.output.lines, IsEmpty());
}

TEST_F(OvCommanderViewRealFiles, anInputWithFoldersMoves) {
    select("a.txt");
    answer(Key::f6, "sub/a.txt");
    EXPECT_EQ(test::contentOf(folder.path("x/sub/a.txt")), "the letter");
    EXPECT_FALSE(exists("x/a.txt"));
}

TEST_F(OvCommanderViewRealFiles, anInputThatClimbsMovesOutOfTheFolder) {
    select("a.txt");
    answer(Key::f6, "../a.txt");
    EXPECT_EQ(test::contentOf(folder.path("a.txt")), "the letter");
}

TEST_F(OvCommanderViewRealFiles, anUnchangedRenameOfANameThatIsNotTextChangesNoByte) {
    folder.makeFile("x/caf\xE9", "bytes");
    select("caf\xE9");
    press(Key::f6);
    press(Key::returnKey);
    EXPECT_EQ(test::contentOf(folder.path("x/caf\xE9")), "bytes");
    EXPECT_EQ(selectedName(), "caf\xE9");
}

TEST_F(OvCommanderViewRealFiles, aChainOfNewFoldersIsMadeAtOnce) {
    answer(Key::f7, "new/inner");
    EXPECT_TRUE(fs::is_directory(folder.path("x/new/inner")));
    EXPECT_TRUE(lists(commander->leftPanel(), "new"));
}

TEST_F(OvCommanderViewRealFiles, aNewFolderIsSelectedAndAnExistingOneIsNoError) {
    answer(Key::f7, "fresh");
    EXPECT_EQ(selectedName(), "fresh");
    answer(Key::f7, "sub");
    EXPECT_EQ(selectedName(), "sub");
    EXPECT_EQ(test::contentOf(folder.path("x/sub/inner")), "deep");
}

TEST_F(OvCommanderViewRealFiles, whatCannotBeTrashedStaysAndPrintsItsLine) {
    // A plain file where the home trash would have to be made.
    const test::ScopedEnvironment data("XDG_DATA_HOME", folder.makeFile("no folder"));
    const test::ScopedEnvironment home("HOME", folder.path("no folder"));
    select("sub");
    press(Key::f8);
    press(Key::returnKey);
    EXPECT_EQ(test::contentOf(folder.path("x/sub/inner")), "deep");
    ASSERT_EQ(desktop.output.lines.size(), 1U);
    EXPECT_THAT(desktop.output.lines[0], StartsWith("Error moving to trash: "));
}

TEST_F(OvCommanderViewRealFiles, theViewerShowsAFilesText) {
    select("a.txt");
    press(Key::f3);
    EXPECT_EQ(commander->dialogOverlay()->dialogType(), DialogType(dialog::Viewer{"a.txt", "the letter"}));
}

TEST_F(OvCommanderViewRealFiles, theViewerOfAFifoAnswersAtOnce) {
    folder.makeFifo("x/pipe");
    select("pipe");
    press(Key::f3);
    const auto* viewer = std::get_if<dialog::Viewer>(&commander->dialogOverlay()->dialogType());
    ASSERT_NE(viewer, nullptr);
    EXPECT_THAT(viewer->content, StartsWith("Error reading file: "));
}

}  // namespace
}  // namespace vantrel
