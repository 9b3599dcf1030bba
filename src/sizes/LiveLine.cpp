#include "sizes/LiveLine.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace vantrel::sizes {

namespace {

constexpr const char* toLineStart = "\r\033[K";  // ECMA-48: carriage return, erase in line

std::size_t terminalColumns() {
    constexpr std::size_t usual = 80;
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return usual;
    return size.ws_col;
}

}  // namespace

LiveLine::LiveLine() : isTerminal_(::isatty(STDERR_FILENO) == 1) {}

void LiveLine::show(const SizesQuestion& question) {
    if (!isTerminal_) return;
    // The last column stays free: some terminals go to the next line behind it.
    const std::string line = liveLine(question.finishedCount(), question.folderCount(),
                                      question.sizes().total(), terminalColumns() - 1);
    std::fputs((toLineStart + line).c_str(), stderr);
    std::fflush(stderr);
    isShown_ = true;
}

void LiveLine::erase() {
    if (!isShown_) return;
    std::fputs(toLineStart, stderr);
    std::fflush(stderr);
    isShown_ = false;
}

}  // namespace vantrel::sizes
