#include "qt/QtMainQueue.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QScopedValueRollback>
#include <QThread>
#include <chrono>
#include <iterator>
#include <utility>

namespace vantrel {

namespace {

constexpr std::chrono::milliseconds turnLength{4};

// How long the queue, once awake, lets tasks gather before it looks again. Each wake-up by another thread
// takes a processor from the threads that walk, and thousands of totals may arrive one by one.
constexpr std::chrono::milliseconds pause{4};

const auto endOfEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

}  // namespace

void QtMainQueue::post(Task task) {
    {
        const std::scoped_lock lock(mutex_);
        if (closed_) return;
        posted_.push_back(std::move(task));
        if (std::exchange(awake_, true) && !isTurnDue()) return;
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

// What a key asks for and is known at once belongs into the very frame that shows what the key did: a posted
// event comes before the painting, the timer after it.
bool QtMainQueue::isTurnDue() {
    return QThread::currentThread() == thread() && !isServing_ && !std::exchange(isTurnPosted_, true);
}

// Input that was typed ahead is handled in one go, before anything posted. So the tasks run when the next
// input arrives, before anybody gets it, or, when none is waiting, with what was posted.
void QtMainQueue::postAfterEvent(Task task) {
    {
        const std::scoped_lock lock(mutex_);
        if (closed_) return;
    }
    if (afterEvent_.empty()) {
        qApp->installEventFilter(this);
        QCoreApplication::postEvent(this, new QEvent(endOfEvent), Qt::HighEventPriority);
    }
    afterEvent_.push_back(std::move(task));
}

bool QtMainQueue::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
            runAfterEvent();
            break;
        default:
            break;
    }
    return false;
}

void QtMainQueue::runAfterEvent() {
    while (!afterEvent_.empty()) {
        qApp->removeEventFilter(this);
        for (Task& task : std::exchange(afterEvent_, {})) task();
    }
}

void QtMainQueue::close() {
    std::vector<Task> dropped;
    {
        const std::scoped_lock lock(mutex_);
        closed_ = true;
        dropped.swap(posted_);
    }
    waiting_.clear();
    afterEvent_.clear();
    nextTurn_.stop();
}

void QtMainQueue::customEvent(QEvent* event) {
    runAfterEvent();
    if (event->type() == endOfEvent) return;
    isTurnPosted_ = false;
    runForAWhile();
}

void QtMainQueue::timerEvent(QTimerEvent*) {
    runAfterEvent();
    runForAWhile();
}

void QtMainQueue::runForAWhile() {
    // A timer of zero is served after input and painting; another posted event would go before them. It is
    // started first, so that a task which runs an event loop of its own does not hold up the others.
    nextTurn_.start(0, this);
    const QDeadlineTimer turnEnd(turnLength, Qt::PreciseTimer);
    const QScopedValueRollback serving(isServing_, true);
    Task task;
    bool ranAny = false;
    while (takeNext(task)) {
        std::exchange(task, nullptr)();
        ranAny = true;
        if (turnEnd.hasExpired()) return;
    }
    if (ranAny) {
        nextTurn_.start(static_cast<int>(pause.count()), this);
    } else if (fallAsleep()) {
        nextTurn_.stop();
    }
}

bool QtMainQueue::takeNext(Task& task) {
    if (waiting_.empty()) {
        const std::scoped_lock lock(mutex_);
        if (posted_.empty()) return false;
        waiting_.assign(std::make_move_iterator(posted_.begin()), std::make_move_iterator(posted_.end()));
        posted_.clear();
    }
    task = std::move(waiting_.front());
    waiting_.pop_front();
    return true;
}

// False when a task has been posted meanwhile, whose sender relies on the queue being awake.
bool QtMainQueue::fallAsleep() {
    const std::scoped_lock lock(mutex_);
    if (!posted_.empty()) return false;
    awake_ = false;
    return true;
}

}  // namespace vantrel
