#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "posix/files/FileOperations.h"
#include "posix/files/Trash.h"
#include "support/HostileNames.h"
#include "support/LongTests.h"
#include "support/RealFilesWindow.h"
#include "support/TreeSnapshot.h"
#include "walk/WalkFixture.h"

// Names that are no text, that look like commands, that turn the writing direction round, from the folder to
// the window and back.

namespace vantrel {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::harmIn;

class HostileNames : public testing::Test, protected test::RealFilesWindow {
protected:
    HostileNames() : RealFilesWindow(test::quickPlace()) {
        for (std::size_t index = 0; index < names.size(); ++index) {
            const std::string path = "x/" + names[index];
            if (index % 3 == 0) {
                folder.makeFolder(path);
            } else {
                folder.makeFile(path, names[index]);
            }
        }
        RecordProperty("cases", static_cast<int>(names.size()));
    }

    void openWindow() {
        open();
        commander->leftPanel().setShowHiddenFiles(true);
    }

    std::vector<std::string> shownNames() const {
        std::vector<std::string> shown;
        for (const auto& item : commander->leftPanel().items()) {
            if (!item->isParentDir) shown.push_back(item->name);
        }
        return shown;
    }

    void expectHarmlessPicture() const {
        const test::RecordingCanvas canvas = drawn();
        for (const auto& stroke : canvas.all<test::TextStroke>()) {
            EXPECT_EQ(harmIn(stroke.text), "") << testing::PrintToString(stroke.text);
        }
    }

    const std::vector<std::string> names =
        test::hostileNames(static_cast<std::size_t>(test::byPatience(800, 4'000)));
};

TEST_F(HostileNames, areListedByteByByteInEveryOrder) {
    openWindow();
    for (const SortField field : {SortField::name, SortField::size, SortField::date, SortField::ext}) {
        for (const SortDirection direction : {SortDirection::ascending, SortDirection::descending}) {
            commander->leftPanel().setSortField(field);
            commander->leftPanel().setSortDirection(direction);
            EXPECT_THAT(shownNames(), testing::UnorderedElementsAreArray(names));
        }
    }
}

TEST_F(HostileNames, areDrawnHarmlesslyInEveryRowAndInTheStatusLine) {
    openWindow();
    for (std::size_t row = 0; row < commander->leftPanel().items().size(); ++row) {
        expectHarmlessPicture();
        press(Key::down);
    }
}

TEST_F(HostileNames, areDrawnHarmlesslyInEveryDialogThatNamesThem) {
    openWindow();
    for (std::size_t row = 0; row < commander->leftPanel().items().size(); ++row) {
        for (const Key key : {Key::f3, Key::f5, Key::f6, Key::f8}) {
            press(key);
            if (commander->dialogOverlay() == nullptr) continue;
            expectHarmlessPicture();
            press(Key::escape);
        }
        press(Key::down);
    }
}

TEST_F(HostileNames, areEnteredAndDrawnHarmlesslyInTheTitle) {
    openWindow();
    for (std::size_t index = 0; index < names.size(); index += 30) {
        commander->leftPanel().loadDirectory(names[index]);
        press(Key::returnKey);
        ASSERT_EQ(commander->leftPanel().currentPath(), folder.path("x/" + names[index]));
        expectHarmlessPicture();
        press(Key::backspace);
        EXPECT_EQ(commander->leftPanel().selectedItem()->name, names[index]);
    }
}

TEST_F(HostileNames, areCopiedMovedAndTrashedAsThemselves) {
    const FileOperations operations;
    const fs::path data = folder.path("data");
    for (std::size_t index = 1; index < names.size(); index += 3) {
        const std::string& name = names[index];
        const std::string copy = folder.path("y/" + name);
        const std::string moved = folder.path("y/.") + name.substr(0, 250);
        ASSERT_EQ(operations.copyItem(folder.path("x/" + name), copy), std::error_code());
        ASSERT_EQ(operations.moveItem(copy, moved), std::error_code());
        EXPECT_EQ(contentOf(moved), name);
        ASSERT_EQ(operations.moveItem(moved, copy), std::error_code());
        ASSERT_EQ(Trash({.dataHome = data}).put(copy), std::error_code());

        const auto trashed = test::namesIn(data / "Trash/files");
        ASSERT_EQ(trashed.size(), 1U);
        EXPECT_EQ(contentOf(data / "Trash/files" / trashed[0]), name);
        const std::string info = contentOf(data / "Trash/info" / (trashed[0] + ".trashinfo"));
        const std::size_t begin = info.find("Path=") + 5;
        EXPECT_EQ(test::percentDecoded(info.substr(begin, info.find('\n', begin) - begin)),
                  fs::canonical(folder.path()).string() + "/y/" + name);
        fs::remove_all(data);
    }
}

TEST_F(HostileNames, areWalked) {
    const test::ManualClock clock;
    for (const WalkPool::ReaderFactory reader : {&makeNativeReader, &makePortableReader}) {
        WalkPool pool(clock, {.makeReader = reader, .descriptorBudget = 100});
        const auto end = test::submit(pool, folder.path()).record->waitForEnd();
        ASSERT_TRUE(end);
        EXPECT_EQ(end->totals.items, static_cast<std::int64_t>(names.size() - (names.size() + 2) / 3));
    }
}

TEST_F(HostileNames, asContentAreDrawnHarmlesslyByTheViewer) {
    openWindow();
    std::string content;
    for (const std::string& name : names) content += name + '\n';
    folder.makeFile("x/content", content);
    commander->leftPanel().loadDirectory("content");
    press(Key::f3);
    for (int page = 0; page < 50; ++page) {
        expectHarmlessPicture();
        press(Key::pageDown);
    }
}

}  // namespace
}  // namespace vantrel
