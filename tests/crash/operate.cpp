#include <cstdio>
#include <string>
#include <vector>

#include "posix/files/FileOperations.h"
#include "posix/files/Trash.h"

// One operation, as the program makes it, from the command line: for the tests that cut the power under it.
// What it says on standard output when it returns is what a person would have been told.

namespace {

std::error_code operate(const std::vector<std::string>& words) {
    const vantrel::FileOperations operations;
    if (words.size() == 4 && words[1] == "copy") return operations.copyItem(words[2], words[3]);
    if (words.size() == 4 && words[1] == "move") return operations.moveItem(words[2], words[3]);
    if (words.size() == 3 && words[1] == "trash")
        return vantrel::Trash(vantrel::Trash::userSettings()).put(words[2]);
    if (words.size() == 3 && words[1] == "mkdir") return operations.createDirectory(words[2]);
    return std::make_error_code(std::errc::invalid_argument);
}

}  // namespace

int main(int argc, char** argv) {
    const std::error_code error = operate(std::vector<std::string>(argv, argv + argc));
    std::puts(error ? error.message().c_str() : "done");
    return error ? 1 : 0;
}
