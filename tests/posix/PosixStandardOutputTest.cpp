#include "posix/PosixStandardOutput.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "base/FileDescriptor.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

namespace vantrel {

using test::contentOf;
using test::TemporaryFolder;

namespace {

struct Pipe {
    Pipe(int readingEnd, int writingEnd) : reading(readingEnd), writing(writingEnd) {}
    explicit Pipe(int flags = 0) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC | flags), 0);
        reading = FileDescriptor(ends[0]);
        writing = FileDescriptor(ends[1]);
    }
    FileDescriptor reading, writing;
};

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 4096> buffer;
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count <= 0) return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

bool brokenPipeIsBlocked() {
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    return sigismember(&blocked, SIGPIPE) == 1;
}

}  // namespace

TEST(PosixStandardOutput, writesEachLineAtOnceWithItsNewline) {
    const TemporaryFolder folder;
    const std::string path = folder.makeFile("output");
    const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    PosixStandardOutput output(file.number());
    output.writeLine("first \xFF");
    EXPECT_EQ(contentOf(path), "first \xFF\n");
    output.writeLine("");
    EXPECT_EQ(contentOf(path), "first \xFF\n\n");
}

/// What is ready to be read, without waiting for more.
std::string readReady(int descriptor) {
    EXPECT_EQ(::fcntl(descriptor, F_SETFL, O_NONBLOCK), 0);
    return readAll(descriptor);
}

/// The ways a descriptor may be made: waiting or not, a pipe, a socket, a terminal.
std::vector<std::pair<std::string, Pipe>> everyKind() {
    std::vector<std::pair<std::string, Pipe>> kinds;
    kinds.emplace_back("pipe", Pipe());
    kinds.emplace_back("pipe that does not wait", Pipe(O_NONBLOCK));
    std::array<int, 2> ends{};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    kinds.emplace_back("socket", Pipe(ends[0], ends[1]));
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_EQ(::grantpt(master) + ::unlockpt(master), 0);
    const int terminal = ::open(::ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios raw{};
    ::tcgetattr(terminal, &raw);
    ::cfmakeraw(&raw);
    ::tcsetattr(terminal, TCSANOW, &raw);
    kinds.emplace_back("terminal", Pipe(master, terminal));
    return kinds;
}

TEST(PosixStandardOutput, dropsWhatNobodyReadsInsteadOfWaiting) {
    for (auto& [kind, pipe] : everyKind()) {
        PosixStandardOutput output(pipe.writing.number());
        const std::string line(1000, 'x');
        // More than any of them holds; a writer that waits would never finish.
        for (int count = 0; count < 2000; ++count) output.writeLine(line);
        std::string received;
        for (std::string more; !(more = readReady(pipe.reading.number())).empty();) received += more;
        output.writeLine("after");
        received += readReady(pipe.reading.number());
        EXPECT_THAT(received, testing::StartsWith(line + "\n")) << kind;
        EXPECT_THAT(received, testing::EndsWith("\nafter\n")) << kind;
        EXPECT_LT(received.size(), 1'500'000U) << kind;
        // Whole lines, whatever was dropped.
        const std::string lines = received.substr(0, received.size() - 6);
        EXPECT_EQ(lines.size() % 1001, 0U) << kind;
    }
}

TEST(PosixStandardOutput, finishesALineThatThePipeHadNoRoomForBeforeTheNextOne) {
    Pipe pipe;
    PosixStandardOutput output(pipe.writing.number());
    const std::string line(100'000, 'x');
    output.writeLine(line);
    output.writeLine("dropped");
    std::string received = readReady(pipe.reading.number());
    EXPECT_LT(received.size(), line.size());
    output.writeLine("after");
    received += readReady(pipe.reading.number());
    EXPECT_EQ(received, line + "\nafter\n");
}

TEST(PosixStandardOutput, leavesTheDescriptorAsItFoundIt) {
    Pipe pipe;
    PosixStandardOutput(pipe.writing.number()).writeLine("line");
    EXPECT_EQ(::fcntl(pipe.writing.number(), F_GETFL) & O_NONBLOCK, 0) << "others share it";
}

TEST(PosixStandardOutput, survivesALimitForTheSizeOfFiles) {
    const TemporaryFolder folder;
    const std::string path = folder.makeFile("output");
    EXPECT_TRUE(test::hasSucceeded(test::inChild([&] {
        const rlimit limit{.rlim_cur = 10, .rlim_max = 10};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
        PosixStandardOutput output(file.number());
        output.writeLine("a line that is longer than that");
    })));
    EXPECT_EQ(contentOf(path), "a line tha");
}

TEST(PosixStandardOutput, survivesAReaderThatHasGoneAndLeavesTheSignalAsItWas) {
    struct sigaction before {};
    struct sigaction standard {};
    standard.sa_handler = SIG_DFL;
    ASSERT_EQ(::sigaction(SIGPIPE, &standard, &before), 0);
    Pipe pipe;
    pipe.reading.close();
    PosixStandardOutput(pipe.writing.number()).writeLine("nobody reads this");
    EXPECT_FALSE(brokenPipeIsBlocked());
    ASSERT_EQ(::sigaction(SIGPIPE, &before, nullptr), 0);
}

TEST(PosixStandardOutput, ignoresAnOutputThatIsClosed) {
    PosixStandardOutput(-1).writeLine("dropped");
    EXPECT_FALSE(brokenPipeIsBlocked());
}

}  // namespace vantrel
