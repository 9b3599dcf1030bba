#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <ostream>
#include <string>

#include "support/OwnNamespaces.h"
#include "support/TemporaryFolder.h"

namespace vantrel::test {
namespace {

struct Answer {
    int exitStatus = -1;
    std::string output;  // standard output and standard error
    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* stream) {
    *stream << "exit status " << answer.exitStatus << ", output " << testing::PrintToString(answer.output);
}

// Runs the real program in `folder`. `arguments` are the shell's words.
Answer runIn(const TemporaryFolder& folder, const std::string& arguments) {
    const std::string command = "cd '" + folder.path() + "' && '" VANTREL_SIZES_PROGRAM "' 2>&1 " + arguments;
    Answer answer;
    FILE* stream = ::popen(command.c_str(), "r");
    if (stream == nullptr) return answer;
    std::array<char, 4096> buffer{};
    std::size_t count = 0;
    while ((count = std::fread(buffer.data(), 1, buffer.size(), stream)) > 0)
        answer.output.append(buffer.data(), count);
    answer.exitStatus = WEXITSTATUS(::pclose(stream));
    return answer;
}

class SizesProgram : public testing::Test {
protected:
    SizesProgram() {
        for (const char* name : {"b", "a", "a/deeper"}) folder.makeFolder(name);
        for (const char* name : {"a/1", "a/deeper/2", "b/3", "b/4", "b/5", "6"}) folder.makeFile(name);
    }
    TemporaryFolder folder;
};

TEST_F(SizesProgram, listsSubfoldersAndThenTheFolderItself) {
    EXPECT_EQ(runIn(folder, "--bytes --sort name"), (Answer{0, "0\t2\t./a\n0\t3\t./b\n0\t6\t.\n"}));
}

TEST_F(SizesProgram, addsSeveralFoldersUp) {
    EXPECT_EQ(runIn(folder, "--bytes a b"), (Answer{0, "0\t1\ta/deeper\n0\t2\ta\n0\t3\tb\n0\t5\ttotal\n"}));
}

TEST_F(SizesProgram, goesOnAfterAFolderThatCannotBeRead) {
    EXPECT_EQ(runIn(folder, "--bytes nothing b"),
              (Answer{1, "vantrel-sizes: nothing: No such file or directory\n0\t3\tb\n0\t3\ttotal\n"}));
}

TEST_F(SizesProgram, refusesUnknownOptions) {
    EXPECT_EQ(runIn(folder, "--colour"),
              (Answer{2, "vantrel-sizes: unknown option \"--colour\"\nTry \"vantrel-sizes --help\".\n"}));
}

TEST_F(SizesProgram, writesItsOutputIntoNothingOfItsOwnWhenItIsStartedWithoutStandardDescriptors) {
    EXPECT_EQ(runIn(folder, "--bytes b <&- >&-"),
              (Answer{1, "vantrel-sizes: standard output: Bad file descriptor\n"}));
    EXPECT_EQ(runIn(folder, "--bytes b <&- 2>&-"), (Answer{0, "0\t3\tb\n"}));
}

TEST_F(SizesProgram, saysWhenItsOutputCannotBeWritten) {
    if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full here";
    for (const char* const arguments : {"--bytes b", "--help", "--version"}) {
        EXPECT_EQ(runIn(folder, std::string(arguments) + " >/dev/full"),
                  (Answer{1, "vantrel-sizes: standard output: No space left on device\n"}))
            << arguments;
    }
}

// As an ordinary user, for root has no such limit.
TEST_F(SizesProgram, countsOnItsOnlyThreadWhereItMayStartNoOther) {
    inOwnNamespaces(
        folder, Privileges::none, [] { return true; },
        [this] {
            int output[2];
            ASSERT_EQ(::pipe2(output, O_CLOEXEC), 0);
            const pid_t program = ::fork();
            if (program == 0) {
                const rlimit onlyThis{1, 1};
                // Looking for leaks takes a process.
                ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
                ::dup2(output[1], STDOUT_FILENO);
                ::dup2(output[1], STDERR_FILENO);
                if (::setrlimit(RLIMIT_NPROC, &onlyThis) == 0 && ::chdir(folder.path().c_str()) == 0)
                    ::execl(VANTREL_SIZES_PROGRAM, "vantrel-sizes", "--bytes", "--sort", "name", nullptr);
                ::_exit(126);
            }
            ::close(output[1]);
            std::array<char, 4096> text{};
            std::string all;
            for (ssize_t count = 0; (count = ::read(output[0], text.data(), text.size())) > 0;)
                all.append(text.data(), static_cast<std::size_t>(count));
            int status = 0;
            ::waitpid(program, &status, 0);
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
            EXPECT_EQ(all, "0\t2\t./a\n0\t3\t./b\n0\t6\t.\n");
        });
}

TEST_F(SizesProgram, endsBySignalAlthoughNobodyReadsWhatItPrints) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer holds signals back while stdio writes";
#endif
    // More lines than a pipe holds.
    constexpr int pipeSize = 65536;
    for (int number = 100; number < 400; ++number)
        folder.makeFolder(std::string(240, 'x') + std::to_string(number));
    int output[2];
    ASSERT_EQ(::pipe2(output, O_CLOEXEC), 0);
    ASSERT_EQ(::fcntl(output[1], F_SETPIPE_SZ, pipeSize), pipeSize);
    const pid_t program = ::fork();
    if (program == 0) {
        ::dup2(output[1], STDOUT_FILENO);
        ::execl(VANTREL_SIZES_PROGRAM, "vantrel-sizes", folder.path().c_str(), nullptr);
        ::_exit(127);
    }
    const auto comes = [](const auto& condition) {
        for (int tries = 0; tries < 6000; ++tries) {
            if (condition()) return true;
            ::usleep(10'000);
        }
        return false;
    };
    int waiting = 0;
    EXPECT_TRUE(comes([&] { return ::ioctl(output[0], FIONREAD, &waiting) == 0 && waiting == pipeSize; }));
    ::kill(program, SIGTERM);
    int status = 0;
    const bool hasEnded = comes([&] { return ::waitpid(program, &status, WNOHANG) == program; });
    EXPECT_TRUE(hasEnded && WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    if (!hasEnded) ::kill(program, SIGKILL);
    ::close(output[0]);
    ::close(output[1]);
}

}  // namespace
}  // namespace vantrel::test
