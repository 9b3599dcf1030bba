#include "walk/WalkScheduler.h"

#include <system_error>

#include "base/Precondition.h"
#include "base/SignalsBlocked.h"
#include "walk/WalkWorker.h"

namespace vantrel::walking {

namespace {

// Some tens of microseconds: about as long as a sleeping thread takes to be woken.
constexpr int looksBeforeSleep = 1000;

// A refusal costs as much as a small folder, and would come with each.
constexpr Seconds pauseAfterRefusal{0.1};

// Not a yield to other threads, which may cost this one its turn for milliseconds.
void relaxProcessor() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

}  // namespace

WalkScheduler::WalkScheduler(const Clock& clock, const WalkPool::Options& options)
    : clock_(clock),
      budget_(options.descriptorBudget),
      mayAwait_(std::thread::hardware_concurrency() > 1),
      available_(static_cast<int>(options.threads)) {
    precondition(options.threads > 0, "a pool needs a thread");
    for (unsigned i = 0; i <= options.threads; ++i)
        workers_.push_back(std::make_unique<WalkWorker>(*this, i, options.makeReader()));
    threads_.reserve(mostThreads());
}

WalkScheduler::~WalkScheduler() {
    {
        std::lock_guard lock(sleepLock_);
        stopping_.request_stop();
        wakeUp_.notify_all();
    }
    for (auto& thread : threads_) thread.join();
}

void WalkScheduler::submit(WalkRequest request) {
    auto walk = std::make_unique<RunningWalk>(std::move(request), clock_, stopping_.get_token());
    {
        std::lock_guard lock(walksLock_);
        waitingWalks_.push_back(std::move(walk));
        waitingWalkCount_.store(waitingWalks_.size());
    }
    wakeOne();
}

bool WalkScheduler::catchUp(Seconds lent) {
    {
        std::lock_guard lock(sleepLock_);
        if (isLent_ || !hasWork()) return false;
        if (sleepers() <= wakeUps_ && mayStartThread() && startThread()) return false;
        if (!threads_.empty()) return false;
        if (lent <= Seconds(0)) return true;
        isLent_ = true;
    }
    workers_.back()->runUntil(clock_, clock_.now() + lent);
    std::lock_guard lock(sleepLock_);
    isLent_ = false;
    return true;
}

Visit WalkScheduler::takeNow(WalkWorker& worker) {
    if (Visit visit = worker.queue().takeNewest()) return visit;
    return beginFurtherWalk();
}

Visit WalkScheduler::take(WalkWorker& worker) {
    while (!isStopping()) {
        if (Visit visit = worker.queue().takeNewest()) return visit;
        if (Visit visit = beginFurtherWalk()) return visit;
        if (Visit visit = steal(worker)) return visit;
        if (awaitWork()) continue;
        worker.rest();
        sleep();
    }
    return {};
}

// Going to sleep and being woken takes several times as long as a small folder, so one worker at a time,
// where there is more than one processor, stays awake a little longer. True when there is work.
bool WalkScheduler::awaitWork() {
    if (!mayAwait_ || isAwaiting_.exchange(true)) return false;
    bool found = false;
    for (int i = 0; i < looksBeforeSleep && !found && !isStopping(); ++i) {
        relaxProcessor();
        found = hasWork();
    }
    isAwaiting_ = false;
    return found;
}

Visit WalkScheduler::beginFurtherWalk() {
    while (waitingWalkCount_.load() > 0) {
        std::unique_ptr<RunningWalk> walk;
        {
            std::lock_guard lock(walksLock_);
            if (waitingWalks_.empty()) return {};
            walk = std::move(waitingWalks_.front());
            waitingWalks_.pop_front();
            waitingWalkCount_.store(waitingWalks_.size());
        }
        if (waitingWalkCount_.load() > 0) wakeOne();
        if (walk->isCancelled()) {
            walk->end();
            continue;
        }
        walk->begin();
        return Visit(Folder::makeRoot(std::move(walk)));
    }
    return {};
}

Visit WalkScheduler::steal(WalkWorker& thief) {
    const std::size_t count = workers_.size();
    for (std::size_t i = 1; i < count; ++i) {
        FolderQueue& victim = workers_[(thief.index() + i) % count]->queue();
        if (Visit visit = victim.takeOldest()) {
            if (!victim.isEmpty()) wakeOne();
            return visit;
        }
    }
    return {};
}

bool WalkScheduler::hasWork() const {
    if (waitingWalkCount_.load() > 0) return true;
    for (const auto& worker : workers_)
        if (!worker->queue().isEmpty()) return true;
    return false;
}

void WalkScheduler::sleep() {
    std::unique_lock lock(sleepLock_);
    // Counted before the last look: who pushes after that look sees the sleeper, who pushed before is seen.
    available_.fetch_add(1);
    if (!hasWork()) {
        wakeUp_.wait(lock, [this] { return wakeUps_ > 0 || isStopping(); });
        if (wakeUps_ > 0) --wakeUps_;
    }
    available_.fetch_sub(1);
}

void WalkScheduler::wakeOne() {
    if (isAwaiting_.load()) return;  // it will see what was pushed, at the latest in `sleep`
    if (available_.load() == 0) return;
    std::lock_guard lock(sleepLock_);
    if (sleepers() <= wakeUps_ && mayStartThread() && startThread()) return;
    if (wakeUps_ >= sleepers()) return;
    ++wakeUps_;
    wakeUp_.notify_one();
}

// Under sleepLock_.
int WalkScheduler::sleepers() const {
    return available_.load() - static_cast<int>(mostThreads() - threads_.size());
}

// Under sleepLock_. A lent thread may stand in another folder, where a new one would believe to be at home.
bool WalkScheduler::mayStartThread() const {
    if (threads_.size() == mostThreads() || isLent_) return false;
    return !startAgainAt_ || clock_.now() >= *startAgainAt_;
}

// Under sleepLock_. False when the system refuses: what would have been the thread's work is left to the
// others, who look for it before they sleep, or to `catchUp` where there are none.
bool WalkScheduler::startThread() {
    if (isStopping()) return true;
    SignalsBlocked signalsBlocked;
    WalkWorker& worker = *workers_[threads_.size()];
    try {
        threads_.emplace_back([&worker] { worker.run(); });
    } catch (const std::system_error&) {
        startAgainAt_ = clock_.now() + pauseAfterRefusal;
        return false;
    }
    available_.fetch_sub(1);
    return true;
}

void WalkScheduler::giveUp(FolderUse& use) {
    std::lock_guard lock(givingUp_);
    use.giveUp();
}

void WalkScheduler::giveUpAll() {
    for (auto& worker : workers_) {
        worker->queue().forEach([this](const Visit& visit) {
            if (visit.use || visit.folder->isRoot()) return;
            if (FolderUse use = visit.folder->parent()->tryUse()) giveUp(use);
        });
    }
}

}  // namespace vantrel::walking
