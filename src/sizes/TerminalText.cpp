#include "sizes/TerminalText.h"

#include <cstddef>

namespace vantrel::sizes {

namespace {

struct Character {
    char32_t codePoint = 0;
    std::size_t length = 0;  // bytes; 0 when they are not UTF-8
};

// The first character of `text`, which is not empty (The Unicode Standard, table 3-7).
Character firstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return {first, 1};
    const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
    if (length == 0 || text.size() < length) return {};
    char32_t codePoint = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return {};
        codePoint = codePoint << 6 | (byte(i) & 0x3FU);
    }
    const bool isTooLong = (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
    const bool isSurrogate = codePoint >= 0xD800 && codePoint < 0xE000;
    if (isTooLong || isSurrogate || codePoint > 0x10FFFF) return {};
    return {codePoint, length};
}

bool disturbs(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x061C || c == 0x200E || c == 0x200F ||
           (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

std::string terminalText(std::string_view path) {
    std::string result;
    result.reserve(path.size());
    while (!path.empty()) {
        const Character character = firstCharacter(path);
        if (character.length == 0 || disturbs(character.codePoint))
            result += '?';
        else
            result += path.substr(0, character.length);
        path.remove_prefix(character.length == 0 ? 1 : character.length);
    }
    return result;
}

}  // namespace vantrel::sizes
