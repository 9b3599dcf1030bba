#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

#include "walk/FolderQueue.h"
#include "walk/RunningWalk.h"
#include "walk/WalkPool.h"

namespace vantrel::walking {

class WalkWorker;

/// Deals folders out to the workers of one pool: submitted walks, the workers' queues, sleeping and waking.
/// Threads: any may submit, one at a time may lend itself; all else is for the workers. Refused threads and
/// scarce descriptors are waited for, never reported.
class WalkScheduler {
public:
    WalkScheduler(const Clock& clock, const WalkPool::Options& options);
    ~WalkScheduler();

    void submit(WalkRequest request);

    /// See WalkQueue.
    bool catchUp(Seconds lent);

    /// The next folder for a worker: its own newest, the root of a further walk, or another worker's oldest;
    /// sleeps while there is none. Nothing when the pool is being destroyed.
    Visit take(WalkWorker& worker);

    /// The same for the worker of a lent thread: nothing when there is none.
    Visit takeNow(WalkWorker& worker);

    /// The root of the walk submitted first among those that wait and are not cancelled, or nothing.
    Visit beginFurtherWalk();

    /// To be called after a push into a worker's queue.
    void wakeOne();

    DescriptorBudget& budget() { return budget_; }
    bool isStopping() const { return stopping_.stop_requested(); }

    /// Closes the descriptor of a folder whose sub-folders wait, unless others use it as well.
    void giveUp(FolderUse& use);

    /// Held while a worker retries what failed for want of a descriptor, so that workers do not take them
    /// away from each other.
    std::mutex& shortage() { return shortage_; }

    /// Closes what the waiting folders' parents keep open.
    void giveUpAll();

private:
    Visit steal(WalkWorker& thief);
    bool awaitWork();
    void sleep();
    bool startThread();
    bool mayStartThread() const;
    std::size_t mostThreads() const { return workers_.size() - 1; }
    int sleepers() const;
    bool hasWork() const;

    const Clock& clock_;
    DescriptorBudget budget_;
    std::stop_source stopping_;

    // The atomics below are sequentially consistent, and so are the pushes into the queues: a worker that
    // goes to sleep tells first and looks for work then, who brings work does it the other way round, and at
    // least one of them has to see the other.

    std::mutex walksLock_;
    std::deque<std::unique_ptr<RunningWalk>> waitingWalks_;  // under walksLock_
    std::atomic<std::size_t> waitingWalkCount_{0};

    const bool mayAwait_;                  // more than one processor
    std::atomic<bool> isAwaiting_{false};  // one worker is about to sleep but still looks out for work

    std::mutex sleepLock_;
    std::condition_variable wakeUp_;
    int wakeUps_ = 0;             // under sleepLock_; not yet answered by a sleeper
    std::atomic<int> available_;  // workers that sleep, or whose thread was not started yet

    std::optional<Seconds> startAgainAt_;  // under sleepLock_; once the system has refused a thread
    bool isLent_ = false;                  // under sleepLock_; somebody else's thread is at work

    std::mutex givingUp_;
    std::mutex shortage_;

    std::vector<std::unique_ptr<WalkWorker>> workers_;  // the last one for a lent thread
    std::vector<std::thread> threads_;  // under sleepLock_; of the first workers, started when first needed
};

}  // namespace vantrel::walking
