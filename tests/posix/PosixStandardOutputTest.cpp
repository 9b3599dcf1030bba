#include "platform/posix/PosixStandardOutput.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

#include "platform/FileDescriptor.h"
#include "support/TemporaryFolder.h"

namespace vantrel {

using test::contentOf;
using test::TemporaryFolder;

namespace {

struct Pipe {
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

TEST(PosixStandardOutput, writesALineThatIsLongerThanThePipeWhole) {
    for (const int flags : {0, O_NONBLOCK}) {
        Pipe pipe;
        ASSERT_EQ(::fcntl(pipe.writing.number(), F_SETFL, flags), 0);
        std::string received;
        std::jthread reader([&] { received = readAll(pipe.reading.number()); });
        const std::string line(1'000'000, 'x');
        PosixStandardOutput(pipe.writing.number()).writeLine(line);
        pipe.writing.close();
        reader.join();
        EXPECT_EQ(received, line + "\n");
    }
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
