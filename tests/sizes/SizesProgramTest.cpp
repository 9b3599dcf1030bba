#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "support/TemporaryFolder.h"

namespace vantrel::test {
namespace {

struct Answer {
    int exitStatus = -1;
    std::string output;  // standard output and standard error
};

// Runs the real program in `folder`. `arguments` are the shell's words.
Answer runIn(const TemporaryFolder& folder, const std::string& arguments) {
    const std::string command = "cd '" + folder.path() + "' && '" VANTREL_SIZES_PROGRAM "' 2>&1 " + arguments;
    Answer answer;
    FILE* stream = ::popen(command.c_str(), "r");
    if (!stream) return answer;
    char buffer[4096];
    std::size_t count = 0;
    while ((count = std::fread(buffer, 1, sizeof buffer, stream)) > 0) answer.output.append(buffer, count);
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
    const Answer answer = runIn(folder, "--bytes --sort name");
    EXPECT_EQ(answer.output, "0\t2\t./a\n0\t3\t./b\n0\t6\t.\n");
    EXPECT_EQ(answer.exitStatus, 0);
}

TEST_F(SizesProgram, addsSeveralFoldersUp) {
    const Answer answer = runIn(folder, "--bytes a b");
    EXPECT_EQ(answer.output, "0\t1\ta/deeper\n0\t2\ta\n0\t3\tb\n0\t5\ttotal\n");
    EXPECT_EQ(answer.exitStatus, 0);
}

TEST_F(SizesProgram, goesOnAfterAFolderThatCannotBeRead) {
    const Answer answer = runIn(folder, "--bytes nothing b");
    EXPECT_EQ(answer.output, "vantrel-sizes: nothing: No such file or directory\n0\t3\tb\n0\t3\ttotal\n");
    EXPECT_EQ(answer.exitStatus, 1);
}

TEST_F(SizesProgram, refusesUnknownOptions) {
    const Answer answer = runIn(folder, "--colour");
    EXPECT_EQ(answer.output, "vantrel-sizes: unknown option \"--colour\"\nTry \"vantrel-sizes --help\".\n");
    EXPECT_EQ(answer.exitStatus, 2);
}

TEST_F(SizesProgram, writesItsOutputIntoNothingOfItsOwnWhenItIsStartedWithoutStandardDescriptors) {
    const Answer noOutput = runIn(folder, "--bytes b <&- >&-");
    EXPECT_EQ(noOutput.output, "vantrel-sizes: standard output: Bad file descriptor\n");
    EXPECT_EQ(noOutput.exitStatus, 1);
    const Answer noInputNorErrors = runIn(folder, "--bytes b <&- 2>&-");
    EXPECT_EQ(noInputNorErrors.output, "0\t3\tb\n");
    EXPECT_EQ(noInputNorErrors.exitStatus, 0);
}

TEST_F(SizesProgram, saysWhenItsOutputCannotBeWritten) {
    if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full here";
    const Answer answer = runIn(folder, "--bytes b >/dev/full");
    EXPECT_EQ(answer.output, "vantrel-sizes: standard output: No space left on device\n");
    EXPECT_EQ(answer.exitStatus, 1);
}

}  // namespace
}  // namespace vantrel::test
