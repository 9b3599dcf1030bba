#include "dialog/ViewerLines.h"

#include "text/Text.h"

namespace vantrel {

namespace {

constexpr std::size_t tabStop = 8;  // columns

bool continuesCodePoint(char byte) {
    return (byte & 0xC0) == 0x80;
}

std::string_view cutAfter(std::string_view line, std::size_t byteLimit) {
    if (line.size() <= byteLimit) return line;
    while (byteLimit > 0 && continuesCodePoint(line[byteLimit])) --byteLimit;
    return line.substr(0, byteLimit);
}

std::string withTabsExpanded(std::string_view line) {
    std::string expanded;
    std::size_t column = 0;
    for (const char byte : line) {
        if (byte == '\t') {
            const std::size_t width = tabStop - column % tabStop;
            expanded.append(width, ' ');
            column += width;
            continue;
        }
        expanded += byte;
        if (!continuesCodePoint(byte)) ++column;
    }
    return expanded;
}

}  // namespace

std::vector<std::string> viewerLines(std::string_view content, std::size_t lineLimit, std::size_t byteLimit) {
    std::vector<std::string> lines;
    while (lines.size() < lineLimit) {
        const std::size_t end = content.find('\n');
        std::string_view line = content.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        lines.push_back(text::shownText(withTabsExpanded(cutAfter(line, byteLimit))));
        if (end == std::string_view::npos) break;
        content.remove_prefix(end + 1);
    }
    return lines;
}

}  // namespace vantrel
