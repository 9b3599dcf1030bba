#include "qt/QtWindow.h"

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
    EXPECT_EQ(window.geometry().center().x(), middle.x());
    // Room is left for a title bar, which this platform does not have.
    const int titleBar = QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
    EXPECT_NEAR(window.geometry().center().y(), middle.y(), titleBar);
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

namespace {

/// Counts the events that get through to a widget.
class Recorder final : public QWidget {
public:
    int inputs = 0;

protected:
    void keyPressEvent(QKeyEvent*) override { ++inputs; }
    void mousePressEvent(QMouseEvent*) override { ++inputs; }
    void mouseDoubleClickEvent(QMouseEvent*) override { ++inputs; }
    void wheelEvent(QWheelEvent*) override { ++inputs; }
    void inputMethodEvent(QInputMethodEvent*) override { ++inputs; }
};

void giveInputTo(QWidget& widget) {
    QTest::keyClick(&widget, Qt::Key_F8);
    QTest::keyClick(&widget, Qt::Key_Return);
    QTest::mouseClick(&widget, Qt::LeftButton);
    QTest::mouseDClick(&widget, Qt::LeftButton);
    QWheelEvent wheel({}, {}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &wheel);
    QInputMethodEvent committed;
    committed.setCommitString("x");
    QCoreApplication::sendEvent(&widget, &committed);
}

}  // namespace

TEST(QtApplication, afterTerminateNoInputReachesAnybodyUntilTheLoopHasEnded) {
    Recorder widget;
    giveInputTo(widget);
    const int inputs = widget.inputs;
    EXPECT_GE(inputs, 6);
    application().terminate();
    giveInputTo(widget);
    EXPECT_EQ(widget.inputs, inputs);
    EXPECT_TRUE(loopEnds());
    giveInputTo(widget);
    EXPECT_EQ(widget.inputs, 2 * inputs);
}

TEST(QtApplication, afterTerminateAKeyEquivalentDoesNothing) {
    int calls = 0;
    application().setMainMenu({{"File", {{"Open", [&] { ++calls; }, "o"}}}});
    const auto window = application().makeWindow(options);
    window->centerAndShow();
    QWidget& content = *application().content();
    QTest::keyClick(&content, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(calls, 1);
    application().terminate();
    QTest::keyClick(&content, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(loopEnds());
    application().setMainMenu({});
}

TEST(QtApplication, afterTerminateAssistiveTechnologyActsOnNothing) {
    const auto window = application().makeWindow(options);
    EXPECT_TRUE(application().content()->takesActions());
    application().terminate();
    EXPECT_FALSE(application().content()->takesActions());
    EXPECT_TRUE(loopEnds());
    EXPECT_TRUE(application().content()->takesActions());
}

TEST(QtApplication, terminateTellsItsHandler) {
    int calls = 0;
    application().setTerminationHandler([&] { ++calls; });
    application().terminate();
    EXPECT_EQ(calls, 1);
    application().setTerminationHandler(nullptr);
    EXPECT_TRUE(loopEnds());
}

TEST(QtWindow, standsWholeInsideASmallScreenAtASmallerSize) {
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QtWindow window({"Large", {5000, 4000}, {100, 100}, {}});
    window.menuBar()->addMenu("File");
    window.centerAndShow();
    EXPECT_TRUE(available.contains(window.frameGeometry()));
    EXPECT_LT(window.content().width(), available.width() + 1);
    EXPECT_GT(window.content().height(), available.height() / 2);
}

TEST(QtWindow, showsItsTitleAndMenusWhereNotEvenItsSmallestSizeFits) {
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QtWindow window({"Large", {5000, 4000}, {4000, 3000}, {}});
    window.menuBar()->addMenu("File");
    window.centerAndShow();
    EXPECT_EQ(window.content().size(), QSize(4000, 3000));
    EXPECT_GE(window.geometry().left(), available.left());
    EXPECT_GE(window.geometry().top(), available.top());
    EXPECT_LT(window.geometry().top(), available.top() + 60);
}

}  // namespace vantrel::test
