#include "qt/preview/NewestJob.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace vantrel::test {

namespace {

constexpr std::chrono::seconds longEnough{30};

bool happens(const std::future<void>& event) {
    return event.wait_for(longEnough) == std::future_status::ready;
}

/// A job that hangs until it is released, whatever it is told.
class HangingJob {
public:
    NewestJob::Job job() {
        return [state = state_](const std::stop_token& stop) {
            state->started.set_value();
            state->released.get_future().wait();
            state->wasStopped = stop.stop_requested();
            state->ended.set_value();
        };
    }

    bool starts() { return happens(started_); }
    void release() { state_->released.set_value(); }
    bool ends() { return happens(ended_); }
    bool wasStopped() const { return state_->wasStopped; }

private:
    struct State {
        std::promise<void> started, released, ended;
        std::atomic<bool> wasStopped = false;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
    std::future<void> started_ = state_->started.get_future();
    std::future<void> ended_ = state_->ended.get_future();
};

}  // namespace

TEST(NewestJob, runsAJobOnAnotherThread) {
    NewestJob jobs;
    std::promise<std::thread::id> thread;
    auto answer = thread.get_future();
    jobs.run([&](const std::stop_token&) { thread.set_value(std::this_thread::get_id()); });
    ASSERT_EQ(answer.wait_for(longEnough), std::future_status::ready);
    EXPECT_NE(answer.get(), std::this_thread::get_id());
}

TEST(NewestJob, aHangingJobDoesNotHoldUpTheNextAndIsToldToStop) {
    NewestJob jobs;
    HangingJob first;
    HangingJob second;
    jobs.run(first.job());
    ASSERT_TRUE(first.starts());
    jobs.run(second.job());
    ASSERT_TRUE(second.starts());
    first.release();
    second.release();
    ASSERT_TRUE(first.ends());
    ASSERT_TRUE(second.ends());
    EXPECT_TRUE(first.wasStopped());
    EXPECT_FALSE(second.wasStopped());
}

TEST(NewestJob, cancellingStopsTheRunningJob) {
    NewestJob jobs;
    HangingJob job;
    jobs.run(job.job());
    ASSERT_TRUE(job.starts());
    jobs.cancel();
    job.release();
    ASSERT_TRUE(job.ends());
    EXPECT_TRUE(job.wasStopped());
}

TEST(NewestJob, withoutAFreeThreadOnlyTheNewestJobWaits) {
    NewestJob jobs;
    std::vector<HangingJob> hanging(NewestJob::mostThreads);
    for (HangingJob& job : hanging) {
        jobs.run(job.job());
        ASSERT_TRUE(job.starts());
    }
    const auto dropped = std::make_shared<std::atomic<int>>(0);
    jobs.run([dropped](const std::stop_token&) { ++*dropped; });
    std::promise<void> newest;
    const std::future<void> newestRan = newest.get_future();
    jobs.run([&](const std::stop_token&) { newest.set_value(); });
    EXPECT_EQ(dropped.use_count(), 1) << "a job that will never run is destroyed at once";
    EXPECT_EQ(newestRan.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    hanging.front().release();
    EXPECT_TRUE(happens(newestRan));
    EXPECT_EQ(*dropped, 0);
    for (std::size_t index = 1; index < hanging.size(); ++index) hanging[index].release();
    for (HangingJob& job : hanging) EXPECT_TRUE(job.ends());
}

TEST(NewestJob, itsEndDoesNotWaitForAHangingJob) {
    HangingJob job;
    {
        NewestJob jobs;
        jobs.run(job.job());
        ASSERT_TRUE(job.starts());
    }
    job.release();
    EXPECT_TRUE(job.ends());
    EXPECT_TRUE(job.wasStopped());
}

TEST(NewestJob, aThreadServesManyJobs) {
    NewestJob jobs;
    for (int round = 0; round < 1000; ++round) {
        std::promise<void> done;
        const std::future<void> ran = done.get_future();
        jobs.run([&](const std::stop_token&) { done.set_value(); });
        ASSERT_TRUE(happens(ran));
    }
}

}  // namespace vantrel::test
