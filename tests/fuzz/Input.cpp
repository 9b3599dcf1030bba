#include "fuzz/Input.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vantrel::fuzz {

namespace {

using namespace std::string_view_literals;

constexpr std::array fragments{
    // Letters of several lengths and scripts, whose case or spelling is not one to one.
    "é"sv, "e\u0301"sv, "ß"sv, "ẞ"sv, "İ"sv, "ı"sv, "Σ"sv, "ς"sv, "ﬁ"sv, "Å"sv, "\u212B"sv, "Ж"sv, "한"sv,
    "\u1112\u1161\u11AB"sv, "漢"sv, "𝔘"sv, "क्षि"sv, "ก็"sv, "ǆ"sv, "ŉ"sv,
    // Digits and numbers.
    "٣"sv, "५"sv, "²"sv, "Ⅷ"sv, "10"sv, "007"sv, "99999999999999999999"sv,
    // Right to left, and what turns the direction of text.
    "א"sv, "ع"sv, "\u200E"sv, "\u200F"sv, "\u061C"sv, "\u202E"sv, "\u202C"sv, "\u2066"sv, "\u2068"sv,
    "\u2069"sv,
    // Separators, controls, and what no font draws.
    "\u2028"sv, "\u2029"sv, "\u0085"sv, "\u009B"sv, "\u200D"sv, "\u200B"sv, "\uFEFF"sv, "\uFFFD"sv,
    "\uFFFE"sv, "\U0010FFFF"sv, "\uE000"sv, "\x1B[31m"sv, "\r\n"sv, "\t"sv, "\0"sv,
    // Characters of several code points.
    "👩‍👧‍👦"sv, "🇩🇪"sv, "🇩"sv, "❤️"sv, "👍🏽"sv, "\u0301"sv, "\uFE0F"sv,
    // Not UTF-8: lone and missing continuations, overlong forms, surrogates, beyond the last code point.
    "\x80"sv, "\xBF"sv, "\xC3"sv, "\xE2\x82"sv, "\xF0\x9F\x98"sv, "\xC0\xAF"sv, "\xE0\x80\xAF"sv,
    "\xED\xA0\x80"sv, "\xED\xBF\xBF"sv, "\xF4\x90\x80\x80"sv, "\xF8\x88\x80\x80\x80"sv, "\xFE"sv, "\xFF"sv,
    // What paths, names and formats are made of.
    ".."sv, "/"sv, "//"sv, "~"sv, ".tar.gz"sv, "%2F"sv, "$(x)"sv, "'"sv, "\""sv, "\\"sv, "-"sv};

constexpr std::size_t longestName = 255;

}  // namespace

std::string Input::bytes(std::size_t limit) {
    const auto taken = rest_.first(std::min(limit, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return {taken.begin(), taken.end()};
}

std::string Input::text(std::size_t limit) {
    std::string text;
    for (std::size_t count = below(limit + 1); count > 0; --count) {
        const std::uint8_t piece = byte();
        if (piece < 0x80) {
            text += static_cast<char>(piece);
        } else if (piece < 0xF0) {
            text += fragments[(piece - 0x80U) % fragments.size()];
        } else {
            text += static_cast<char>(byte());
        }
    }
    return text;
}

std::string Input::name(std::size_t pieces) {
    std::string name = text(pieces);
    std::erase_if(name, [](char byte) { return byte == '/' || byte == '\0'; });
    name.resize(std::min(name.size(), longestName));
    if (name.empty() || name == "." || name == "..") return "n" + name;
    return name;
}

}  // namespace vantrel::fuzz
