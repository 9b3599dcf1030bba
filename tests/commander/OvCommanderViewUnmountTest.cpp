#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include "commander/OvCommanderView.h"
#include "posix/files/PosixFileManager.h"
#include "support/FakeDesktop.h"
#include "support/OwnNamespaces.h"
#include "support/RecordingCanvas.h"

namespace vantrel {
namespace {

TEST(OvCommanderViewUnmount, aVolumeThatIsTakenAwayWhileItIsShownLeavesTheWindowGoing) {
    const test::TemporaryFolder folder;
    folder.makeFolder("volume");
    folder.makeFolder("home");
    test::inOwnNamespaces(
        folder, test::Privileges::mounting,
        [&] { return test::mountMemory(folder.path("volume"), "size=1m"); },
        [&] {
            folder.makeFile("volume/a.txt", "the letter");
            folder.makeFolder("volume/sub");
            test::FakeDesktop desktop;
            PosixFileManager files;
            desktop.process.currentDirectory = folder.path("volume");
            desktop.process.home = folder.path("home");
            const auto commander =
                OvCommanderView::make(desktop.portsWith(files), *desktop.engine, {0, 0, 1100, 720});
            OvPanelView& panel = commander->leftPanel();
            panel.loadDirectory("a.txt");
            ASSERT_EQ(panel.items().size(), 3U);
            ASSERT_EQ(::umount2(folder.path("volume").c_str(), MNT_DETACH), 0);

            const auto press = [&](Key key) {
                commander->keyDown({.key = key});
                test::RecordingCanvas canvas;
                commander->drawTree(canvas);
            };
            press(Key::f3);
            const auto* viewer = std::get_if<dialog::Viewer>(&commander->dialogOverlay()->dialogType());
            ASSERT_NE(viewer, nullptr);
            EXPECT_EQ(viewer->content, "Error reading file: No such file or directory");
            press(Key::escape);
            for (const Key command : {Key::f5, Key::f6, Key::f8}) {
                press(command);
                desktop.mainQueue.runAll();
                if (commander->dialogOverlay() != nullptr) press(Key::returnKey);
                EXPECT_EQ(commander->dialogOverlay(), nullptr);
            }
            EXPECT_EQ(commander->rightPanel().items().size(), 1U) << "nothing has arrived there";
            panel.loadDirectory();
            EXPECT_EQ(panel.items().size(), 1U) << "what lies below the mount point: nothing";
        });
}

}  // namespace
}  // namespace vantrel
