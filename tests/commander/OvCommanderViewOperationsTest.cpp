#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <variant>

#include "support/CommanderFixture.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The left panel is active and shows "/start" (folders alpha and beta, file cedar.txt); the right one
// "/Users/ann".
class OvCommanderViewOperations : public test::CommanderTest {
protected:
    OvCommanderViewOperations() {
        press(Key::end);  // cedar.txt
        desktop.files.listedFolders.clear();
    }

    // Opens a dialog, types over its proposal and presses Return.
    void answer(Key key, const std::string& input) {
        press(key);
        desktop.mainQueue.runAll();
        desktop.textFields.alive.back()->type(input);
        press(Key::returnKey);
    }
};

TEST_F(OvCommanderViewOperations, confirmingACopyCopiesToTheProposalAndReloadsOnlyTheOtherPanel) {
    press(Key::f5);
    press(Key::returnKey);
    EXPECT_THAT(desktop.files.operations, ElementsAre("copy /start/cedar.txt to /Users/ann/cedar.txt"));
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/Users/ann"));
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
}

TEST_F(OvCommanderViewOperations, theCopyTargetIsTakenAsTyped) {
    answer(Key::f5, "some where/b ");
    EXPECT_THAT(desktop.files.operations, ElementsAre("copy /start/cedar.txt to some where/b "));
}

TEST_F(OvCommanderViewOperations, aFailedCopyIsSilentAndReloadsTheOtherPanelAllTheSame) {
    desktop.files.operationError = std::make_error_code(std::errc::file_exists);
    answer(Key::f5, "/y");
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/Users/ann"));
    EXPECT_THAT(desktop.output.lines, IsEmpty());
}

TEST_F(OvCommanderViewOperations, anEmptyInputDoesNothingAndReloadsNothing) {
    for (const Key key : {Key::f5, Key::f6, Key::f7}) answer(key, "");
    EXPECT_THAT(desktop.files.operations, IsEmpty());
    EXPECT_THAT(desktop.files.listedFolders, IsEmpty());
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
}

TEST_F(OvCommanderViewOperations, anAbsentInputDoesNothing) {
    commander->dialogDidConfirm(dialog::Copy{"a", "/start/a", "/b"}, std::nullopt);
    commander->dialogDidConfirm(dialog::Move{"a", "/start/a", "a"}, std::nullopt);
    commander->dialogDidConfirm(dialog::Mkdir{"/start"}, std::nullopt);
    EXPECT_THAT(desktop.files.operations, IsEmpty());
    EXPECT_THAT(desktop.files.listedFolders, IsEmpty());
}

TEST_F(OvCommanderViewOperations, renamingStaysInTheItemsFolderAndTheNewNameIsSelected) {
    answer(Key::f6, "b.txt");
    EXPECT_THAT(desktop.files.operations, ElementsAre("move /start/cedar.txt to /start/b.txt"));
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/start"));
    EXPECT_EQ(selectedName(left()), "b.txt");
}

TEST_F(OvCommanderViewOperations, aMovesInputCountsFromTheItemsFolderAlsoWithASlashInFront) {
    desktop.files.operationError = std::make_error_code(std::errc::io_error);
    answer(Key::f6, "sub/x");
    press(Key::end);
    answer(Key::f6, "../x");
    press(Key::end);
    answer(Key::f6, "/tmp/b.txt");
    EXPECT_THAT(desktop.files.operations,
                ElementsAre("move /start/cedar.txt to /start/sub/x", "move /start/cedar.txt to /start/../x",
                            "move /start/cedar.txt to /start/tmp/b.txt"));
}

TEST_F(OvCommanderViewOperations, aFailedMoveIsSilentAndReloadsTheActivePanelAllTheSame) {
    desktop.files.operationError = std::make_error_code(std::errc::permission_denied);
    answer(Key::f6, "b.txt");
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/start"));
    EXPECT_EQ(selectedName(left()), "alpha");
    EXPECT_THAT(desktop.output.lines, IsEmpty());
}

TEST_F(OvCommanderViewOperations, anItemOfTheRootIsRenamedInTheRoot) {
    desktop.files.addFile("/", "top");
    left().setCurrentPath("/");
    press(Key::end);
    answer(Key::f6, "new");
    EXPECT_THAT(desktop.files.operations, ElementsAre("move /top to /new"));
}

TEST_F(OvCommanderViewOperations, aNewFolderIsMadeInTheActivePanelsFolderAndSelected) {
    press(Key::f7);
    press(Key::returnKey);
    EXPECT_THAT(desktop.files.operations, ElementsAre("make /start/New_Folder"));
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/start"));
    EXPECT_EQ(selectedName(left()), "New_Folder");
}

TEST_F(OvCommanderViewOperations, aChainOfNewFoldersIsMadeAndItsTextMatchesNoRow) {
    answer(Key::f7, "new/inner");
    EXPECT_THAT(desktop.files.operations, ElementsAre("make /start/new/inner"));
    EXPECT_EQ(selectedName(left()), "alpha");
}

TEST_F(OvCommanderViewOperations, confirmingADeleteMovesTheItemToTheTrashAndReloadsWithTheDefaultRow) {
    press(Key::f8);
    press(Key::returnKey);
    EXPECT_THAT(desktop.files.operations, ElementsAre("trash /start/cedar.txt"));
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/start"));
    EXPECT_EQ(selectedName(left()), "alpha");
    EXPECT_THAT(desktop.output.lines, IsEmpty());
}

TEST_F(OvCommanderViewOperations, aFailedDeletePrintsItsLineAndReloads) {
    desktop.files.operationError = std::make_error_code(std::errc::permission_denied);
    press(Key::f8);
    press(Key::returnKey);
    EXPECT_THAT(desktop.output.lines, ElementsAre("Error moving to trash: Permission denied"));
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/start"));
}

TEST_F(OvCommanderViewOperations, cancellingChangesNothing) {
    for (const Key key : {Key::f5, Key::f6, Key::f7, Key::f8}) {
        press(key);
        press(Key::tab);
        press(Key::returnKey);
        EXPECT_EQ(commander->dialogOverlay(), nullptr);
    }
    EXPECT_THAT(desktop.files.operations, IsEmpty());
    EXPECT_THAT(desktop.files.listedFolders, IsEmpty());
}

TEST_F(OvCommanderViewOperations, theDialogIsGoneBeforeTheFileWorkBegins) {
    desktop.files.onOperation = [this] {
        EXPECT_EQ(commander->dialogOverlay(), nullptr);
        EXPECT_EQ(commander->subviews().size(), 2U);
    };
    for (const Key key : {Key::f5, Key::f6, Key::f7, Key::f8}) {
        press(key);
        press(Key::returnKey);
    }
    EXPECT_EQ(desktop.files.operations.size(), 4U);
}

TEST_F(OvCommanderViewOperations, whatCountsIsTheSelectionAtTheTimeTheDialogWasOpened) {
    press(Key::f8);
    left().home();
    press(Key::returnKey);
    EXPECT_THAT(desktop.files.operations, ElementsAre("trash /start/cedar.txt"));
}

class OvCommanderViewViewer : public OvCommanderViewOperations {
protected:
    dialog::Viewer viewed() {
        press(Key::f3);
        const auto* viewer = commander->dialogOverlay()
                                 ? std::get_if<dialog::Viewer>(&commander->dialogOverlay()->dialogType())
                                 : nullptr;
        if (viewer == nullptr) {
            ADD_FAILURE() << "no viewer";
            return {};
        }
        return *viewer;
    }
};

TEST_F(OvCommanderViewViewer, aFilesTextIsShownUnderItsName) {
    desktop.files.write("/start/cedar.txt", "hello\nworld");
    EXPECT_EQ(viewed(), (dialog::Viewer{"cedar.txt", "hello\nworld"}));
}

TEST_F(OvCommanderViewViewer, onlyTheFirst200000BytesAreShown) {
    desktop.files.write("/start/cedar.txt", std::string(300'000, 'x'));
    EXPECT_EQ(viewed().content, std::string(200'000, 'x'));
}

TEST_F(OvCommanderViewViewer, aSequenceCutByTheLimitBecomesOneReplacementCharacter) {
    desktop.files.write("/start/cedar.txt", std::string(199'998, 'x') + "\xE2\x82\xAC");
    EXPECT_EQ(viewed().content, std::string(199'998, 'x') + "\uFFFD");
}

TEST_F(OvCommanderViewViewer, bytesThatAreNoTextAreShownAsReplacementCharacters) {
    desktop.files.write("/start/cedar.txt", "\x89PNG\xFF");
    EXPECT_EQ(viewed().content, "\uFFFDPNG\uFFFD");
}

TEST_F(OvCommanderViewViewer, anEmptyFileSaysSoWithTheSizeOfItsRow) {
    desktop.files.write("/start/cedar.txt", "");
    EXPECT_EQ(viewed().content, "(Binary or Empty File:  100 B )");
    press(Key::escape);
    desktop.files.write("/start/empty", "");
    left().loadDirectory("empty");
    EXPECT_EQ(viewed().content, "(Binary or Empty File:    0 B )");
}

TEST_F(OvCommanderViewViewer, aFileThatCannotBeReadShowsTheReasonInTheViewer) {
    desktop.files.makeUnreadable("/start/cedar.txt");
    EXPECT_THAT(viewed().content, testing::StartsWith("Error reading file: "));
}

TEST_F(OvCommanderViewViewer, foldersAndTheParentRowHaveNoViewer) {
    left().loadDirectory("alpha");
    press(Key::f3);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
    press(Key::home);
    press(Key::f3);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
}

TEST_F(OvCommanderViewViewer, theFunctionKeyCellOpensItToo) {
    desktop.files.write("/start/cedar.txt", "hello");
    click(5 + 109 * 2 + 50, 705);
    EXPECT_TRUE(isViewer(commander->dialogOverlay()->dialogType()));
}

}  // namespace
}  // namespace vantrel
