#include "sizes/CommandLineQueue.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <thread>

#include "sizes/Interruption.h"

namespace vantrel::sizes {
namespace {

constexpr Seconds atOnce{0};
constexpr Seconds longEnough{60};

class CommandLineQueueTest : public testing::Test {
protected:
    CommandLineQueueTest() { EXPECT_EQ(::pipe(interruption), 0); }
    ~CommandLineQueueTest() override {
        ::close(interruption[0]);
        ::close(interruption[1]);
    }

    int interruption[2];
    std::string ran;
};

TEST_F(CommandLineQueueTest, runsTasksInTheOrderOfPostingAndOnlyThen) {
    CommandLineQueue queue(interruption[0]);
    queue.post([&] { ran += 'a'; });
    queue.post([&] { ran += 'b'; });
    EXPECT_EQ(ran, "");
    EXPECT_TRUE(queue.runAfter(2, longEnough));
    EXPECT_EQ(ran, "ab");
    EXPECT_TRUE(queue.runAfter(1, atOnce));
    EXPECT_EQ(ran, "ab") << "once";
}

TEST_F(CommandLineQueueTest, isWokenByTheLastOfSoManyTasks) {
    CommandLineQueue queue(interruption[0]);
    std::thread poster([&] {
        for (int i = 0; i < 100; ++i) queue.post([&] { ran += 'x'; });
    });
    while (ran.size() < 100) ASSERT_TRUE(queue.runAfter(100 - ran.size(), longEnough));
    poster.join();
    EXPECT_EQ(ran.size(), 100U);
}

TEST_F(CommandLineQueueTest, runsWhatIsThereWhenTimeIsUp) {
    CommandLineQueue queue(interruption[0]);
    queue.post([&] { ran += 'a'; });
    EXPECT_TRUE(queue.runAfter(1000, Seconds(0.001)));
    EXPECT_EQ(ran, "a");
}

TEST_F(CommandLineQueueTest, aTaskMayPostAnother) {
    CommandLineQueue queue(interruption[0]);
    queue.post([&] { queue.post([&] { ran += 'b'; }); });
    EXPECT_TRUE(queue.runAfter(1, longEnough));
    EXPECT_EQ(ran, "");
    EXPECT_TRUE(queue.runAfter(1, longEnough));
    EXPECT_EQ(ran, "b");
}

TEST_F(CommandLineQueueTest, saysWhenItIsInterruptedWhileItWaits) {
    CommandLineQueue queue(interruption[0]);
    ASSERT_EQ(::write(interruption[1], "", 1), 1);
    queue.post([&] { ran += 'a'; });
    EXPECT_FALSE(queue.runAfter(1000, longEnough));
    EXPECT_EQ(ran, "");
}

TEST(InterruptionTest, endsTheProcessByTheSignalThatCame) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::signal(number, SIG_DFL);  // whoever started the tests may ignore it
            const auto interruption = Interruption::install();
            const Interruption::Patience patience(interruption);
            ::raise(number);
            pollfd source{interruption.descriptor(), POLLIN, 0};
            if (::poll(&source, 1, 0) != 1) ::_exit(1);
            interruption.leave();
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), number);
    }
}

TEST(InterruptionTest, endsTheProcessAtTheEndOfPatienceAndAtOnceWithoutIt) {
    for (const bool isPatient : {true, false}) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::signal(SIGTERM, SIG_DFL);
            const auto interruption = Interruption::install();
            if (isPatient) {
                const Interruption::Patience patience(interruption);
                ::raise(SIGTERM);
            } else {
                ::raise(SIGTERM);
            }
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << isPatient;
    }
}

TEST(InterruptionTest, leavesAloneWhatWasIgnored) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::signal(SIGHUP, SIG_IGN);
        const auto interruption = Interruption::install();
        const Interruption::Patience patience(interruption);
        ::raise(SIGHUP);
        pollfd source{interruption.descriptor(), POLLIN, 0};
        ::_exit(::poll(&source, 1, 0) == 0 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

}  // namespace
}  // namespace vantrel::sizes
