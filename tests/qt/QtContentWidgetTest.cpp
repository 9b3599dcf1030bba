#include "qt/QtContentWidget.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>

#include "qt/QtTestSupport.h"

namespace vantrel::test {

namespace {

constexpr Color background{0, 0, 0.67};

class QtContentWidgetTest : public testing::Test {
protected:
    QtContentWidgetTest() {
        widget.setRoot(root);
        widget.resize(300, 200);
        widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&widget));
        widget.setFocus();
    }

    void turnWheel(QPoint position, int eighthsOfDegree, QPoint pixels = {}) {
        QWheelEvent event(QPointF(position), widget.mapToGlobal(QPointF(position)), pixels,
                          QPoint(0, eighthsOfDegree), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&widget, &event);
    }

    std::shared_ptr<RecordingView> root = std::make_shared<RecordingView>();
    QtContentWidget widget{background};
};

}  // namespace

TEST_F(QtContentWidgetTest, theRootTakesTheWidgetsSize) {
    EXPECT_EQ(root->frame(), (Rect{0, 0, 300, 200}));
    widget.resize(400, 250);
    EXPECT_EQ(root->frame(), (Rect{0, 0, 400, 250}));
}

TEST_F(QtContentWidgetTest, theViewsArePaintedOverTheBackground) {
    const auto small = std::make_shared<RecordingView>();
    small->setFrame({10, 20, 30, 40});
    const auto plain = std::make_shared<View>();
    plain->addSubview(small);
    widget.setRoot(plain);
    const QImage image = widget.grab().toImage();
    EXPECT_EQ(image.pixel(5, 5), qRgb(0, 0, 171));
    EXPECT_EQ(image.pixel(10, 20), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(39, 59), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(40, 60), qRgb(0, 0, 171));
}

TEST_F(QtContentWidgetTest, manyRequestsForARedrawCostOne) {
    serveEvents();
    const int before = root->draws;
    for (int i = 0; i < 100; ++i) root->setNeedsDisplay();
    EXPECT_EQ(root->draws, before) << "asked for, never forced";
    ASSERT_TRUE(QTest::qWaitFor([&] { return root->draws > before; }));
    EXPECT_EQ(root->draws, before + 1);
}

TEST_F(QtContentWidgetTest, aRequestRightAfterARedrawIsServedToo) {
    for (int round = 0; round < 3; ++round) {
        const int before = root->draws;
        root->setNeedsDisplay();
        EXPECT_TRUE(QTest::qWaitFor([&] { return root->draws > before; }));
    }
}

// The milliseconds for which the widget's only timer was started; 0 without one.
int timerInterval(QtContentWidget& widget) {
    const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&widget);
    return timers.isEmpty() ? 0 : timers.front().interval;
}

TEST_F(QtContentWidgetTest, aChangeByItselfWaitsLongerForItsFrameThanOneThatIsWaitedFor) {
    int inPassing = 0;
    int atOnce = 0;
    ASSERT_TRUE(QTest::qWaitFor([&] {
        widget.repaint();
        root->setNeedsDisplay(Redraw::inPassing);
        inPassing = timerInterval(widget);
        root->setNeedsDisplay(Redraw::atOnce);
        atOnce = timerInterval(widget);
        // On a busy machine both may be due already; then it is tried again.
        return inPassing > 0 && atOnce > 0;
    }));
    EXPECT_GT(inPassing, atOnce);
    root->setNeedsDisplay(Redraw::inPassing);
    EXPECT_LE(timerInterval(widget), atOnce) << "what waits for the next frame does not hold it up";
    const int before = root->draws;
    EXPECT_TRUE(QTest::qWaitFor([&] { return root->draws > before; }));
    EXPECT_EQ(timerInterval(widget), 0);
}

TEST_F(QtContentWidgetTest, aChangeByItselfIsPaintedInTheEnd) {
    for (int round = 0; round < 3; ++round) {
        const int before = root->draws;
        root->setNeedsDisplay(Redraw::inPassing);
        EXPECT_TRUE(QTest::qWaitFor([&] { return root->draws > before; }));
    }
}

TEST_F(QtContentWidgetTest, aRootThatLeavesTheWindowHasNoHostAnyMore) {
    EXPECT_EQ(root->host(), &widget);
    widget.setRoot(std::make_shared<View>());
    EXPECT_EQ(root->host(), nullptr);
}

TEST_F(QtContentWidgetTest, aRootOutlivesItsWidget) {
    const auto view = std::make_shared<RecordingView>();
    { QtContentWidget(background).setRoot(view); }
    EXPECT_EQ(view->host(), nullptr);
    view->setNeedsDisplay();
}

TEST_F(QtContentWidgetTest, everyKeyReachesTheRootOnce) {
    QTest::keyClick(&widget, Qt::Key_Tab);
    QTest::keyClick(&widget, Qt::Key_Backtab, Qt::ShiftModifier);
    QTest::keyClick(&widget, Qt::Key_F10);
    QTest::keyClick(&widget, Qt::Key_Q, Qt::ControlModifier);
    QTest::keyClick(&widget, Qt::Key_A, Qt::AltModifier);
    QTest::keyClick(&widget, Qt::Key_Escape);
    ASSERT_EQ(root->keys.size(), 6U);
    EXPECT_EQ(root->keys[0].key, Key::tab);
    EXPECT_EQ(root->keys[1].key, Key::tab);
    EXPECT_EQ(root->keys[2].key, Key::f10);
    EXPECT_EQ(root->keys[3].charactersIgnoringModifiers, "q");
    EXPECT_EQ(root->keys[3].command, CommandKey::held);
    EXPECT_EQ(root->keys[4].charactersIgnoringModifiers, "a");
    EXPECT_EQ(root->keys[5].key, Key::escape);
}

TEST_F(QtContentWidgetTest, aModifierAloneIsNoKey) {
    for (const int key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_AltGr, Qt::Key_Super_L}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtContentWidgetTest, aKeyThatNobodyWantsIsDropped) {
    root->answer = EventResult::ignored;
    QTest::keyClick(&widget, Qt::Key_F7);
    EXPECT_EQ(root->keys.size(), 1U);
}

TEST_F(QtContentWidgetTest, aHeldKeyRepeats) {
    for (int i = 0; i < 3; ++i) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier, QString(), i > 0);
        QCoreApplication::sendEvent(&widget, &event);
    }
    EXPECT_EQ(root->keys.size(), 3U);
}

TEST_F(QtContentWidgetTest, textOfAnInputMethodArrivesAsAKey) {
    EXPECT_TRUE(widget.testAttribute(Qt::WA_InputMethodEnabled));
    EXPECT_EQ(widget.inputMethodQuery(Qt::ImEnabled), QVariant(true));
    QInputMethodEvent composing("´", {});
    QCoreApplication::sendEvent(&widget, &composing);
    EXPECT_TRUE(root->keys.empty()) << "nothing is decided yet";
    QInputMethodEvent committed;
    committed.setCommitString("é");
    QCoreApplication::sendEvent(&widget, &committed);
    ASSERT_EQ(root->keys.size(), 1U);
    EXPECT_EQ(root->keys[0].charactersIgnoringModifiers, "é");
}

TEST_F(QtContentWidgetTest, aClickArrivesWhereItWasMade) {
    QTest::mouseClick(&widget, Qt::LeftButton, {}, {120, 45});
    ASSERT_EQ(root->clicks.size(), 1U);
    EXPECT_EQ(root->clicks[0].locationInWindow, (Point{120, 45}));
    EXPECT_EQ(root->clicks[0].clickCount, 1);
}

TEST_F(QtContentWidgetTest, theSecondPressOfADoubleClickCountsTwo) {
    QTest::mouseClick(&widget, Qt::LeftButton, {}, {120, 45});
    QTest::mouseDClick(&widget, Qt::LeftButton, {}, {120, 45});
    ASSERT_EQ(root->clicks.size(), 2U);
    EXPECT_EQ(root->clicks[0].clickCount, 1);
    EXPECT_EQ(root->clicks[1].clickCount, 2);
}

TEST_F(QtContentWidgetTest, theOtherButtonsDoNothing) {
    QTest::mouseClick(&widget, Qt::RightButton, {}, {120, 45});
    QTest::mouseClick(&widget, Qt::MiddleButton, {}, {120, 45});
    QTest::mouseDClick(&widget, Qt::RightButton, {}, {120, 45});
    EXPECT_TRUE(root->clicks.empty());
}

TEST_F(QtContentWidgetTest, aNotchOfTheWheelIsOneScrollTowardsTheStart) {
    turnWheel({50, 60}, 120);
    ASSERT_EQ(root->scrolls.size(), 1U);
    EXPECT_GT(root->scrolls[0].deltaY, 0);
    EXPECT_EQ(root->scrolls[0].locationInWindow, (Point{50, 60}));
    turnWheel({50, 60}, -120);
    ASSERT_EQ(root->scrolls.size(), 2U);
    EXPECT_LT(root->scrolls[1].deltaY, 0);
}

TEST_F(QtContentWidgetTest, aTouchpadScrollsByWholeNotches) {
    for (int i = 0; i < 8; ++i) turnWheel({50, 60}, -30, {0, -4});
    EXPECT_EQ(root->scrolls.size(), 2U);
}

TEST_F(QtContentWidgetTest, aSidewaysMovementScrollsNothing) {
    QWheelEvent event(QPointF(5, 5), QPointF(5, 5), {}, QPoint(240, 0), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
    EXPECT_TRUE(root->scrolls.empty());
}

TEST_F(QtContentWidgetTest, theKeyboardComesBackFromAFieldOnRequest) {
    QLineEdit field(&widget);
    field.show();
    field.setFocus();
    ASSERT_TRUE(field.hasFocus());
    root->host()->focusContent();
    EXPECT_TRUE(widget.hasFocus());
}

TEST_F(QtContentWidgetTest, aClickLeavesTheKeyboardToTheField) {
    QLineEdit field(&widget);
    field.setGeometry(0, 0, 50, 20);
    field.show();
    field.setFocus();
    QTest::mouseClick(&widget, Qt::LeftButton, {}, {200, 150});
    EXPECT_EQ(root->clicks.size(), 1U);
    EXPECT_TRUE(field.hasFocus());
}

}  // namespace vantrel::test
