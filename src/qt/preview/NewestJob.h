#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>

namespace vantrel {

/// Runs the newest job on other threads, where jobs may hang for ever in a system call. A new job tells the
/// others to stop and does not wait for them: while they hang, it gets another thread, up to a fixed number.
/// A job that has not begun is dropped for a newer one. Main thread only.
class NewestJob {
public:
    using Job = std::function<void(const std::stop_token&)>;

    static constexpr int mostThreads = 4;

    /// How long the destructor waits for jobs that have been told to stop. A thread that still hangs then is
    /// left alone; of this object it uses nothing but its own job.
    static constexpr std::chrono::milliseconds patience{1000};

    NewestJob();
    NewestJob(const NewestJob&) = delete;
    NewestJob& operator=(const NewestJob&) = delete;
    ~NewestJob();

    /// `job` is called and destroyed on another thread, unless it is dropped.
    void run(Job job);

    /// Tells every job to stop and drops the one that waits.
    void cancel();

private:
    struct Shared;
    std::shared_ptr<Shared> shared_;
};

}  // namespace vantrel
