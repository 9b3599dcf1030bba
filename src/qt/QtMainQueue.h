#pragma once

#include <QBasicTimer>
#include <QObject>
#include <deque>
#include <mutex>
#include <vector>

#include "platform/MainQueue.h"

namespace vantrel {

/// The main thread's event loop as a queue. Tasks run for a few milliseconds at a time; between two such
/// turns the loop serves everything else, so the window stays usable however many tasks there are. Made,
/// destroyed and served on the main thread; tasks still waiting at the end are dropped.
class QtMainQueue final : public QObject, public MainQueue {
public:
    void post(Task task) override;
    void postAfterEvent(Task task) override;

    /// Drops all waiting tasks and, from now on, every task that is posted. Main thread.
    void close();

protected:
    void customEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    bool isTurnDue();
    void runForAWhile();
    bool takeNext(Task& task);
    bool fallAsleep();
    void runAfterEvent();

    std::mutex mutex_;
    std::vector<Task> posted_;      ///< guarded by mutex_
    bool closed_ = false;           ///< guarded by mutex_
    bool awake_ = false;            ///< guarded by mutex_; a wake-up or the timer is under way
    std::deque<Task> waiting_;      ///< main thread only; older than everything in posted_
    std::vector<Task> afterEvent_;  ///< main thread only
    bool isServing_ = false;        ///< main thread only; tasks are run further up the stack
    bool isTurnPosted_ = false;     ///< main thread only
    QBasicTimer nextTurn_;
};

}  // namespace vantrel
