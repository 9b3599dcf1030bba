#include "platform/qt/QtWindow.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <QTest>
#include <QTimer>

#include "qt/QtTestSupport.h"

namespace vantrel::test {

namespace {

const WindowOptions options{"A title - with a dash", {1100, 720}, {800, 500}, {0, 0, 0.67}};

}  // namespace

TEST(QtWindow, opensWithItsTitleAndItsContentSize) {
    QtWindow window(options);
    const auto root = std::make_shared<RecordingView>();
    window.setContentView(root);
    window.centerAndShow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_EQ(window.windowTitle(), "A title - with a dash");
    EXPECT_EQ(root->frame(), (Rect{0, 0, 1100, 720}));
}

TEST(QtWindow, aMenuBarTakesNothingFromTheContent) {
    QtWindow window(options);
    window.menuBar()->addMenu("File")->addAction("Open");
    const auto root = std::make_shared<RecordingView>();
    window.setContentView(root);
    window.centerAndShow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_EQ(root->frame(), (Rect{0, 0, 1100, 720}));
    window.resize(10, 10);
    serveEvents();
    EXPECT_EQ(root->frame(), (Rect{0, 0, 800, 500}));
}

TEST(QtWindow, shrinksToItsMinimumAndNoFurther) {
    QtWindow window(options);
    window.centerAndShow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.resize(10, 10);
    serveEvents();
    EXPECT_EQ(window.content().size(), QSize(800, 500));
}

TEST(QtWindow, theContentFollowsTheWindowsSize) {
    QtWindow window(options);
    const auto root = std::make_shared<RecordingView>();
    window.setContentView(root);
    window.centerAndShow();
    window.resize(1234, 777);
    serveEvents();
    EXPECT_EQ(root->frame(), (Rect{0, 0, 1234, 777}));
}

TEST(QtWindow, isCentredOnItsScreen) {
    QtWindow window({"Small", {300, 200}, {100, 100}, {}});
    window.centerAndShow();
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_EQ(window.geometry().center(), middle);
}

TEST(QtWindow, theContentHasTheKeyboard) {
    QtWindow window(options);
    window.centerAndShow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_TRUE(window.content().hasFocus());
}

TEST(QtWindow, closesWhenItsOwnerAgrees) {
    QtWindow window(options);
    int asked = 0;
    bool mayClose = false;
    window.setShouldClose([&] {
        ++asked;
        return mayClose;
    });
    window.centerAndShow();
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    mayClose = true;
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(asked, 2);
}

TEST(QtApplication, terminateEndsTheLoopFromInsideACallback) {
    bool after = false;
    QTimer::singleShot(0, [&] {
        application().terminate();
        after = true;
    });
    EXPECT_TRUE(loopEnds());
    EXPECT_TRUE(after) << "the callback runs to its end";
}

TEST(QtApplication, terminateBeforeTheLoopEndsItAtItsStart) {
    application().terminate();
    EXPECT_TRUE(loopEnds());
}

TEST(QtApplication, terminateDoesNotAskTheWindow) {
    const auto window = application().makeWindow(options);
    int asked = 0;
    window->setShouldClose([&] {
        ++asked;
        application().terminate();
        return true;
    });
    window->centerAndShow();
    application().terminate();
    EXPECT_TRUE(loopEnds());
    EXPECT_EQ(asked, 0);
}

TEST(QtApplication, closingTheLastWindowEndsTheLoop) {
    const auto window = application().makeWindow(options);
    window->centerAndShow();
    QTimer::singleShot(0, static_cast<QtWindow*>(window.get()), &QWidget::close);
    EXPECT_TRUE(loopEnds());
}

TEST(QtApplication, aTapOnAltLeavesTheKeyboardToTheContent) {
    EXPECT_EQ(QApplication::style()->styleHint(QStyle::SH_MenuBar_AltKeyNavigation), 0);
}

TEST(QtApplication, isKnownToTheDesktopByItsName) {
    EXPECT_EQ(QGuiApplication::desktopFileName(), "com.vantrel.Vantrel");
}

}  // namespace vantrel::test
