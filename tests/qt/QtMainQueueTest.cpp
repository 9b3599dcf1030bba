#include "qt/QtMainQueue.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTest>
#include <QTimer>
#include <memory>
#include <optional>
#include <thread>

#include "qt/QtTestSupport.h"
#include "qt/QtTimerFactory.h"
#include "support/MainQueueContract.h"
#include "support/TimerContract.h"

namespace vantrel::test {

namespace {

void keepBusy(std::chrono::microseconds time) {
    for (const QDeadlineTimer end(time, Qt::PreciseTimer); !end.hasExpired();) continue;
}

}  // namespace

class QtMainQueueSubject {
public:
    MainQueue& queue() { return queue_; }
    void runAll() {
        bool last = false;
        const auto markEnd = [&] { queue_.post([&] { last = true; }); };
        // The second mark comes after everything that tasks before the first one have posted.
        queue_.post(markEnd);
        EXPECT_TRUE(QTest::qWaitFor([&] { return last; }, 60'000));
    }

private:
    QtMainQueue queue_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainQueueContract, QtMainQueueSubject);

class QtTimersSubject {
public:
    TimerFactory& timers() { return timers_; }
    void turn() { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }

private:
    QtTimerFactory timers_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, TimerContract, QtTimersSubject);

TEST(QtMainQueue, otherEventsAreServedWhileManyTasksWait) {
    constexpr int count = 10'000;
    QtMainQueue queue;
    int ran = 0;
    int ranBeforeTheTimer = -1;
    QTimer::singleShot(1, [&] { ranBeforeTheTimer = ran; });
    for (int i = 0; i < count; ++i) {
        queue.post([&] {
            keepBusy(std::chrono::microseconds(20));
            ++ran;
        });
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return ran == count; }, 60'000));
    EXPECT_GE(ranBeforeTheTimer, 0);
    EXPECT_LT(ranBeforeTheTimer, count);
}

TEST(QtMainQueue, tasksThatPostTheNextOneForEverLeaveTheLoopFree) {
    QtMainQueue queue;
    bool stop = false;
    std::function<void()> again = [&] {
        if (!stop) queue.post(again);
    };
    queue.post(again);
    QTimer::singleShot(1, [&] { stop = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return stop; }, 60'000));
    serveEvents();
}

/// Notes what was known when it was painted.
class PaintRecorder final : public QWidget {
public:
    const bool* isKnown = nullptr;
    std::optional<bool> wasKnown;

protected:
    void paintEvent(QPaintEvent*) override {
        if (isKnown) wasKnown = *isKnown;
    }
};

class WakeUpCounter final : public QObject {
public:
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::User) ++count;
        return false;
    }
};

TEST(QtMainQueue, whatTheMainThreadPostsRunsBeforeTheNextFrameAlsoWhileOthersPost) {
    QtMainQueue queue;
    PaintRecorder window;
    window.resize(100, 100);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    bool ran = false;
    queue.post([&] { ran = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return ran; }, 60'000));
    for (int round = 0; round < 20; ++round) {
        std::thread([&] { queue.post([] {}); }).join();  // the queue is awake from here on
        bool isKnown = false;
        queue.post([&] { isKnown = true; });
        window.wasKnown.reset();
        window.isKnown = &isKnown;
        window.update();
        ASSERT_TRUE(QTest::qWaitFor([&] { return window.wasKnown.has_value(); }, 60'000));
        EXPECT_TRUE(*window.wasKnown) << "in round " << round;
    }
}

TEST(QtMainQueue, aTaskSoonAfterAnotherWakesNobodyAndRunsAllTheSame) {
    QtMainQueue queue;
    WakeUpCounter wakeUps;
    queue.installEventFilter(&wakeUps);
    const auto run = [&] {
        bool ran = false;
        std::thread([&] { queue.post([&ran] { ran = true; }); }).join();
        EXPECT_TRUE(QTest::qWaitFor([&ran] { return ran; }, 60'000));
    };
    // On a busy machine the second one may come too late; then it is tried again.
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            run();
            const int before = wakeUps.count;
            run();
            return wakeUps.count == before;
        },
        60'000));
}

TEST(QtMainQueue, aTaskLongAfterAnotherIsRunToo) {
    QtMainQueue queue;
    WakeUpCounter wakeUps;
    queue.installEventFilter(&wakeUps);
    int ran = 0;
    for (int round = 0; round < 3; ++round) {
        queue.post([&ran] { ++ran; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return ran > round; }, 60'000));
        const auto isAsleep = [&] {
            return QAbstractEventDispatcher::instance()->registeredTimers(&queue).isEmpty();
        };
        EXPECT_TRUE(QTest::qWaitFor(isAsleep, 60'000));
    }
    EXPECT_EQ(wakeUps.count, 3) << "each found the queue asleep";
}

TEST(QtMainQueue, aTaskWithAnEventLoopOfItsOwnDoesNotHoldUpTheOthers) {
    QtMainQueue queue;
    QEventLoop inner;
    bool returned = false;
    QTimer::singleShot(60'000, &inner, [&] { inner.exit(1); });
    queue.post([&] {
        EXPECT_EQ(inner.exec(), 0) << "nobody ran the second task";
        returned = true;
    });
    queue.post([&] { inner.exit(0); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return returned; }, 60'000));
}

TEST(QtMainQueue, tasksStillWaitingAreDroppedWithTheQueue) {
    const auto token = std::make_shared<int>(0);
    bool ran = false;
    {
        QtMainQueue queue;
        queue.post([token, &ran] { ran = true; });
    }
    serveEvents();
    EXPECT_FALSE(ran);
    EXPECT_EQ(token.use_count(), 1);
}

TEST(QtMainQueue, onceClosedItRunsNothingAnyMore) {
    const auto token = std::make_shared<int>(0);
    QtMainQueue queue;
    bool ran = false;
    queue.post([token, &ran] { ran = true; });
    queue.close();
    queue.post([token, &ran] { ran = true; });
    EXPECT_EQ(token.use_count(), 1);
    serveEvents();
    EXPECT_FALSE(ran);
}

TEST(QtMainQueue, aTaskMayCloseTheQueueBeforeTheTasksBehindIt) {
    QtMainQueue queue;
    bool ran = false;
    queue.post([&] { queue.close(); });
    queue.post([&] { ran = true; });
    serveEvents();
    EXPECT_FALSE(ran);
}

namespace {

/// Gets keys as the window system sends them, one right after the other.
class KeyReceiver final : public QWidget {
public:
    std::function<void()> onFirstKey;
    std::vector<bool> wasReady;
    bool isReady = false;

protected:
    void keyPressEvent(QKeyEvent*) override {
        wasReady.push_back(isReady);
        if (wasReady.size() == 1) onFirstKey();
    }
};

}  // namespace

TEST(QtMainQueue, whatIsToFollowAnEventComesBeforeAKeyThatWasTypedAhead) {
    QtMainQueue queue;
    KeyReceiver receiver;
    receiver.onFirstKey = [&] {
        queue.post([] {});
        queue.postAfterEvent([&] { receiver.isReady = true; });
    };
    QTest::keyPress(&receiver, Qt::Key_F7);
    EXPECT_FALSE(receiver.isReady) << "not inside the event, and not before it has ended";
    QTest::keyPress(&receiver, Qt::Key_Q);
    EXPECT_EQ(receiver.wasReady, (std::vector{false, true}));
}

TEST(QtMainQueue, whatIsToFollowAnEventMayBringAboutMoreOfTheKind) {
    QtMainQueue queue;
    std::vector<int> order;
    queue.postAfterEvent([&] {
        order.push_back(1);
        queue.postAfterEvent([&] { order.push_back(2); });
    });
    queue.post([&] { order.push_back(3); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return order.size() == 3; }, 60'000));
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST(QtMainQueue, onceClosedNothingFollowsAnEvent) {
    QtMainQueue queue;
    bool ran = false;
    queue.postAfterEvent([&] { ran = true; });
    queue.close();
    queue.postAfterEvent([&] { ran = true; });
    serveEvents();
    EXPECT_FALSE(ran);
}

}  // namespace vantrel::test
