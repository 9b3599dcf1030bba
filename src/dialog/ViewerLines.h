#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

/// The first lines of a text, at most `lineLimit` of them, each as it may be drawn: tabs reach to the next
/// multiple of eight columns, a carriage return at the end is left out, all else as in `text::shownText`. A
/// line is cut after `byteLimit` bytes, between two code points. Lines end at line feeds; the text after the
/// last one is a line too, also when it is empty. Costs no more than the lines that are asked for.
/// Any thread.
std::vector<std::string> viewerLines(std::string_view content, std::size_t lineLimit, std::size_t byteLimit);

}  // namespace vantrel
