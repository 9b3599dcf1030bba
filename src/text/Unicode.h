#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include <unicode/stringpiece.h>
#include <unicode/unistr.h>

/// Between bytes and ICU's strings. Pure functions, any thread.
namespace vantrel::text {

inline bool isAscii(std::string_view bytes) {
    return std::ranges::none_of(bytes, [](char byte) { return (byte & 0x80) != 0; });
}

/// Whether every byte of `text` is a user-perceived character of its own: in ASCII only CR LF is one of two.
inline bool isOneCharacterPerByte(std::string_view text) {
    return std::ranges::none_of(text, [](char byte) { return (byte & 0x80) != 0 || byte == '\r'; });
}

constexpr char asciiLowerCased(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

/// Repairs broken sequences as `repairedUtf8` does.
inline icu::UnicodeString toUnicode(std::string_view bytes) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(bytes.data(), static_cast<int32_t>(bytes.size())));
}

inline std::string toUtf8(const icu::UnicodeString& unicode) {
    std::string utf8;
    unicode.toUTF8String(utf8);
    return utf8;
}

}  // namespace vantrel::text
