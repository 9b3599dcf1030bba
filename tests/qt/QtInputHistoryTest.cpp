#include "qt/QtInputHistory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>
#include <vector>

#include "qt/QtTestSupport.h"

namespace vantrel::test {

namespace {

using testing::ElementsAre;

constexpr quint32 scanCodeOfReturn = 36;
constexpr quint32 scanCodeOfDown = 116;

/// A window that gets events as the window system sends them: with times and codes.
class QtInputHistoryTest : public testing::Test {
protected:
    QtInputHistoryTest() {
        window.setContentView(root);
        window.centerAndShow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void send(QEvent::Type type, quint32 scanCode, quint64 milliseconds, bool isMarked = false) {
        const int key = scanCode == scanCodeOfReturn ? Qt::Key_Return : Qt::Key_Down;
        QKeyEvent event(type, key, Qt::NoModifier, scanCode, 0, 0, {}, isMarked);
        event.setTimestamp(milliseconds);
        QCoreApplication::sendEvent(&window.content(), &event);
    }

    void click(quint64 milliseconds, QPoint place = {50, 50}, Qt::MouseButton button = Qt::LeftButton) {
        const QPointF at = place;
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, at, window.content().mapToGlobal(at), button,
                              type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
            event.setTimestamp(milliseconds);
            QCoreApplication::sendEvent(&window.content(), &event);
        }
    }

    void move(QPoint place) {
        const QPointF at = place;
        QMouseEvent event(QEvent::MouseMove, at, window.content().mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&window.content(), &event);
    }

    std::vector<KeyRepeat> repeats() const {
        std::vector<KeyRepeat> all;
        for (const KeyEvent& key : root->keys) all.push_back(key.repeat);
        return all;
    }

    std::vector<int> counts() const {
        std::vector<int> all;
        for (const MouseEvent& press : root->clicks) all.push_back(press.clickCount);
        return all;
    }

    const quint64 interval = static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    const int distance = QGuiApplication::styleHints()->mouseDoubleClickDistance();
    std::shared_ptr<RecordingView> root = std::make_shared<RecordingView>();
    QtWindow window{{"Input", {400, 300}, {100, 100}, {}}};
};

}  // namespace

TEST_F(QtInputHistoryTest, aPressAtTheTimeOfItsReleaseIsAHeldKeyWhetherItIsMarkedOrNot) {
    send(QEvent::KeyPress, scanCodeOfReturn, 1000);
    send(QEvent::KeyRelease, scanCodeOfReturn, 1500);
    send(QEvent::KeyPress, scanCodeOfReturn, 1500);
    send(QEvent::KeyRelease, scanCodeOfReturn, 1530, true);
    send(QEvent::KeyPress, scanCodeOfReturn, 1530, true);
    send(QEvent::KeyRelease, scanCodeOfReturn, 1600);
    send(QEvent::KeyPress, scanCodeOfReturn, 1602);
    EXPECT_THAT(repeats(), ElementsAre(KeyRepeat::first, KeyRepeat::held, KeyRepeat::held, KeyRepeat::first));
}

TEST_F(QtInputHistoryTest, anotherKeyAtTheTimeOfARelease) {
    send(QEvent::KeyPress, scanCodeOfReturn, 1000);
    send(QEvent::KeyRelease, scanCodeOfReturn, 1100);
    send(QEvent::KeyPress, scanCodeOfDown, 1100);
    EXPECT_THAT(repeats(), ElementsAre(KeyRepeat::first, KeyRepeat::first));
}

TEST_F(QtInputHistoryTest, aPressAtTheTimeOfAReleaseThatCameSoonerThanAnyRepeatIsAPress) {
    send(QEvent::KeyPress, scanCodeOfReturn, 1000);
    send(QEvent::KeyRelease, scanCodeOfReturn, 1012);
    send(QEvent::KeyPress, scanCodeOfReturn, 1012);
    send(QEvent::KeyRelease, scanCodeOfReturn, 1030);
    send(QEvent::KeyPress, scanCodeOfReturn, 1030, true);
    EXPECT_THAT(repeats(), ElementsAre(KeyRepeat::first, KeyRepeat::first, KeyRepeat::first));
}

TEST_F(QtInputHistoryTest, keysWithoutATimeArePressedEachTime) {
    for (int i = 0; i < 2; ++i) {
        send(QEvent::KeyPress, scanCodeOfReturn, 0);
        send(QEvent::KeyRelease, scanCodeOfReturn, 0);
    }
    EXPECT_THAT(repeats(), ElementsAre(KeyRepeat::first, KeyRepeat::first));
}

TEST_F(QtInputHistoryTest, aReleaseInAnotherWindowIsRememberedToo) {
    send(QEvent::KeyPress, scanCodeOfReturn, 1000);
    QWidget other;
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Return, Qt::NoModifier, scanCodeOfReturn, 0, 0);
    release.setTimestamp(1500);
    QCoreApplication::sendEvent(&other, &release);
    send(QEvent::KeyPress, scanCodeOfReturn, 1500);
    EXPECT_THAT(repeats(), ElementsAre(KeyRepeat::first, KeyRepeat::held));
}

TEST_F(QtInputHistoryTest, pressesOfASeriesAreCountedOnBeyondTwo) {
    for (quint64 time : {1000, 1100, 1200, 1300, 1400}) click(time);
    EXPECT_THAT(counts(), ElementsAre(1, 2, 3, 4, 5));
}

TEST_F(QtInputHistoryTest, aSeriesEndsWhenTheDoubleClickTimeIsOver) {
    click(1000);
    click(1000 + interval - 1);
    click(1000 + 2 * interval - 1);
    EXPECT_THAT(counts(), ElementsAre(1, 2, 1));
}

TEST_F(QtInputHistoryTest, aSeriesEndsBeyondTheDoubleClickDistance) {
    click(1000, {50, 50});
    click(1100, {50 + distance, 50 - distance});
    click(1200, {50 + 2 * distance + 1, 50 - distance});
    EXPECT_THAT(counts(), ElementsAre(1, 2, 1));
}

TEST_F(QtInputHistoryTest, aMovementAwayAndBackEndsASeries) {
    click(1000);
    move({50 + distance + 1, 50});
    move({50, 50});
    click(1100);
    move({50 + distance, 50});
    click(1200);
    EXPECT_THAT(counts(), ElementsAre(1, 1, 2));
}

TEST_F(QtInputHistoryTest, aKeyEndsASeries) {
    click(1000);
    send(QEvent::KeyPress, scanCodeOfDown, 1050);
    click(1100);
    EXPECT_THAT(counts(), ElementsAre(1, 1));
}

TEST_F(QtInputHistoryTest, anotherButtonEndsASeries) {
    click(1000);
    click(1050, {50, 50}, Qt::RightButton);
    click(1100);
    EXPECT_THAT(counts(), ElementsAre(1, 1));
}

TEST_F(QtInputHistoryTest, aPressInAnotherWindowCountsSoThatTheNextOneBelongsToNobody) {
    QWidget other;
    const QPointF place(50, 50);
    QMouseEvent press(QEvent::MouseButtonPress, place, window.content().mapToGlobal(place), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    press.setTimestamp(1000);
    QCoreApplication::sendEvent(&other, &press);
    click(1100);
    EXPECT_TRUE(root->clicks.empty());
    click(1100 + interval);
    EXPECT_THAT(counts(), ElementsAre(1));
}

}  // namespace vantrel::test
