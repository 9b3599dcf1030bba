#include "fuzz/Utf8.h"

#include <algorithm>
#include <cstddef>

namespace vantrel::fuzz {

namespace {

constexpr char32_t replacement = 0xFFFD;

struct Decoded {
    char32_t character = 0;
    std::size_t length = 0;
    bool isWellFormed = false;
};

/// What the second byte may be, which alone tells overlong forms, surrogates and too large numbers (table
/// 3-7).
struct Range {
    unsigned char first;
    unsigned char last;
};

Range secondByteAfter(unsigned char lead) {
    switch (lead) {
        case 0xE0:
            return {0xA0, 0xBF};
        case 0xED:
            return {0x80, 0x9F};
        case 0xF0:
            return {0x90, 0xBF};
        case 0xF4:
            return {0x80, 0x8F};
        default:
            return {0x80, 0xBF};
    }
}

std::size_t lengthAfter(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xC2) return 0;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    return lead < 0xF5 ? 4 : 0;
}

/// The first character of `bytes`, which is not empty.
Decoded decodeFirst(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes.front());
    const std::size_t length = lengthAfter(lead);
    if (length == 0) return {replacement, 1, false};
    if (length == 1) return {lead, 1, true};
    char32_t character = lead & (0x7FU >> length);
    Range range = secondByteAfter(lead);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0;
        if (byte < range.first || byte > range.last) return {replacement, i, false};
        character = character << 6 | (byte & 0x3FU);
        range = {0x80, 0xBF};
    }
    return {character, length, true};
}

template <class Visit>
void forEachCharacter(std::string_view bytes, Visit visit) {
    while (!bytes.empty()) {
        const Decoded decoded = decodeFirst(bytes);
        visit(decoded);
        bytes.remove_prefix(decoded.length);
    }
}

}  // namespace

std::u32string decodedUtf8(std::string_view bytes) {
    std::u32string text;
    forEachCharacter(bytes, [&](const Decoded& decoded) { text += decoded.character; });
    return text;
}

bool isUtf8(std::string_view bytes) {
    bool isValid = true;
    forEachCharacter(bytes, [&](const Decoded& decoded) { isValid = isValid && decoded.isWellFormed; });
    return isValid;
}

bool isDrawable(std::string_view text) {
    const auto disturbs = [](char32_t c) {
        return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029;
    };
    return isUtf8(text) && std::ranges::none_of(decodedUtf8(text), disturbs);
}

}  // namespace vantrel::fuzz
