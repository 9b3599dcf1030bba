#include "qt/preview/NewestJob.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace vantrel {

struct NewestJob::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    // Everything below is guarded by the mutex.
    Job waiting;  ///< empty when none
    std::stop_source newest;
    int threads = 0;
    int idleThreads = 0;
    bool isClosing = false;

    void replace(Job job) {
        // Declared before the lock, so that what waited until now is destroyed without it.
        Job dropped = std::move(job);
        const std::scoped_lock lock(mutex);
        newest.request_stop();
        newest = std::stop_source();
        waiting.swap(dropped);
    }

    bool needsThread() {
        const std::scoped_lock lock(mutex);
        if (idleThreads > 0 || threads >= mostThreads) return false;
        ++threads;
        return true;
    }

    void serve() {
        std::unique_lock lock(mutex);
        for (;;) {
            ++idleThreads;
            changed.wait(lock, [this] { return isClosing || waiting; });
            --idleThreads;
            if (isClosing) break;
            Job job = std::exchange(waiting, nullptr);
            const std::stop_token stop = newest.get_token();
            lock.unlock();
            job(stop);
            job = nullptr;
            lock.lock();
        }
        --threads;
        changed.notify_all();
    }

    void waitForThreads() {
        std::unique_lock lock(mutex);
        isClosing = true;
        newest.request_stop();
        changed.notify_all();
        changed.wait_for(lock, patience, [this] { return threads == 0; });
    }
};

NewestJob::NewestJob() : shared_(std::make_shared<Shared>()) {}

NewestJob::~NewestJob() {
    shared_->waitForThreads();
}

void NewestJob::run(Job job) {
    shared_->replace(std::move(job));
    if (shared_->needsThread()) {
        try {
            std::thread([shared = shared_] { shared->serve(); }).detach();
        } catch (const std::system_error&) {
            // The job waits until a running thread is done.
            const std::scoped_lock lock(shared_->mutex);
            --shared_->threads;
        }
    }
    shared_->changed.notify_one();
}

void NewestJob::cancel() {
    shared_->replace(nullptr);
}

}  // namespace vantrel
