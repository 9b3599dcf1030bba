#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QTest>

#include "qt/preview/PreviewPanelFixture.h"
#include "qt/preview/QtPreviewPanel.h"

namespace vantrel::test {

namespace {

using testing::ElementsAre;

using QtPreviewPanelKeysTest = PreviewPanelFixture;

}  // namespace

TEST_F(QtPreviewPanelKeysTest, spaceAndEscapeCloseIt) {
    source->item = itemAt("/a");
    QtPreviewPanel panel(application(), queue, files.loader());
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Escape}) {
        open(panel);
        EXPECT_TRUE(comes([&] { return showsText(panel, "/a"); }));
        press(panel, key);
        EXPECT_FALSE(panel.isVisible());
        EXPECT_TRUE(QTest::qWaitForWindowActive(ownersWindow())) << "the keyboard goes back";
    }
    EXPECT_TRUE(source->keys.empty());
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtPreviewPanelKeysTest, staysOpenWhileTheSpaceThatOpenedItIsHeld) {
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ", true);
    QCoreApplication::sendEvent(panel.window(), &held);
    EXPECT_TRUE(panel.isVisible());
    EXPECT_TRUE(source->keys.empty());
}

TEST_F(QtPreviewPanelKeysTest, everyOtherKeyGoesToTheDelegateOnce) {
    source->item = itemAt("/a");
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    ASSERT_TRUE(comes([&] { return showsText(panel, "/a"); }));
    press(panel, Qt::Key_Down);
    press(panel, Qt::Key_PageDown);
    press(panel, Qt::Key_Tab);
    press(panel, Qt::Key_Backtab, Qt::ShiftModifier);
    press(panel, Qt::Key_Return);
    press(panel, Qt::Key_F10);
    press(panel, Qt::Key_X);
    press(panel, Qt::Key_Shift, Qt::ShiftModifier);
    std::vector<Key> keys;
    for (const KeyEvent& key : source->keys) keys.push_back(key.key);
    EXPECT_THAT(keys, ElementsAre(Key::down, Key::pageDown, Key::tab, Key::tab, Key::returnKey, Key::f10,
                                  Key::character));
    EXPECT_EQ(source->keys.back().charactersIgnoringModifiers, "x");
    EXPECT_TRUE(root->keys.empty());
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(QtPreviewPanelKeysTest, textOfAnInputMethodGoesToTheDelegateToo) {
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    QInputMethodEvent committed;
    committed.setCommitString("é");
    QCoreApplication::sendEvent(panel.window(), &committed);
    ASSERT_EQ(source->keys.size(), 1U);
    EXPECT_EQ(source->keys[0].charactersIgnoringModifiers, "é");
}

TEST_F(QtPreviewPanelKeysTest, aKeyEquivalentOfTheMenuWorksInIt) {
    int calls = 0;
    application().setMainMenu({{"File", {{"Open", [&] { ++calls; }, "o"}}}});
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    press(panel, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(source->keys.empty());
    application().setMainMenu({});
}

TEST_F(QtPreviewPanelKeysTest, theKeysReachItAlsoAfterAClickIntoWhatItShows) {
    source->item = itemAt("/a");
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    ASSERT_TRUE(comes([&] { return showsText(panel, "/a"); }));
    QTest::mouseClick(panel.window()->text()->viewport(), Qt::LeftButton);
    press(panel, Qt::Key_Down);
    EXPECT_EQ(source->keys.size(), 1U);
}

TEST_F(QtPreviewPanelKeysTest, keysThatArriveAfterItHasMadeWayGoToTheWindowItBelongsTo) {
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    QWindow* const window = panel.window()->windowHandle();
    panel.orderOut();
    QTest::keyClick(panel.window(), Qt::Key_Q);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(source->keys.empty());
    ASSERT_EQ(root->keys.size(), 1U);
    EXPECT_EQ(root->keys[0].charactersIgnoringModifiers, "q");
}

}  // namespace vantrel::test
