#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

#include "platform/MainQueue.h"

namespace vantrel::test {

/// What every main queue keeps. `Subject` offers `MainQueue& queue()` and `void runAll()`, which serves the
/// queue until nothing is left.
template <class Subject>
class MainQueueContract : public testing::Test {
protected:
    MainQueue& queue() { return subject_.queue(); }
    void runAll() { subject_.runAll(); }

private:
    Subject subject_;
};

TYPED_TEST_SUITE_P(MainQueueContract);

TYPED_TEST_P(MainQueueContract, aTaskRunsLaterAndNotInsidePost) {
    bool ran = false;
    this->queue().post([&] { ran = true; });
    EXPECT_FALSE(ran);
    this->runAll();
    EXPECT_TRUE(ran);
}

TYPED_TEST_P(MainQueueContract, tasksRunInTheOrderOfPosting) {
    std::vector<int> order;
    for (int number : {1, 2, 3}) this->queue().post([&order, number] { order.push_back(number); });
    this->runAll();
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TYPED_TEST_P(MainQueueContract, whatATaskPostsRunsAfterEverythingPostedBefore) {
    std::vector<int> order;
    this->queue().post([&] {
        order.push_back(1);
        this->queue().post([&] { order.push_back(3); });
    });
    this->queue().post([&] { order.push_back(2); });
    this->runAll();
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TYPED_TEST_P(MainQueueContract, tasksOfAnotherThreadRunOnTheServingThreadInTheirOrder) {
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    std::thread([&] {
        for (int number = 0; number < 100; ++number) {
            this->queue().post([&, number] {
                order.push_back(number);
                threads.push_back(std::this_thread::get_id());
            });
        }
    }).join();
    this->runAll();
    ASSERT_EQ(order.size(), 100U);
    for (int number = 0; number < 100; ++number) EXPECT_EQ(order[number], number);
    EXPECT_EQ(threads, std::vector(100, std::this_thread::get_id()));
}

TYPED_TEST_P(MainQueueContract, whatIsPostedForTheEndOfAnEventRunsLaterAndBeforeWhatWaits) {
    std::vector<int> order;
    this->queue().post([&] { order.push_back(3); });
    this->queue().postAfterEvent([&] { order.push_back(1); });
    this->queue().postAfterEvent([&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());
    this->runAll();
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract, whatIsPostedForTheEndOfAnEventRunsLaterAndBeforeWhatWaits,
                            aTaskRunsLaterAndNotInsidePost, tasksRunInTheOrderOfPosting,
                            whatATaskPostsRunsAfterEverythingPostedBefore,
                            tasksOfAnotherThreadRunOnTheServingThreadInTheirOrder);

}  // namespace vantrel::test
