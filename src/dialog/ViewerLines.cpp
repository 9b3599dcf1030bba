#include "dialog/ViewerLines.h"

#include "text/Text.h"

namespace vantrel {

namespace {

constexpr std::size_t tabStop = 8;  // columns

std::string_view cutAfter(std::string_view line, std::size_t byteLimit) {
    if (line.size() <= byteLimit) return line;
    while (byteLimit > 0 && text::continuesCodePoint(line[byteLimit])) --byteLimit;
    return line.substr(0, byteLimit);
}

std::string withTabsExpanded(std::string_view line) {
    std::string expanded;
    for (;;) {
        // Begins at a tab stop, so that its own length alone says how far the next one is.
        const std::string_view part = line.substr(0, line.find('\t'));
        expanded += part;
        if (part.size() == line.size()) return expanded;
        expanded.append(tabStop - text::characterCount(part) % tabStop, ' ');
        line.remove_prefix(part.size() + 1);
    }
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
