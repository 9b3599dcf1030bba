#include "text/Text.h"

#include <algorithm>

#include <unicode/uchar.h>

#include "text/Unicode.h"

namespace vantrel::text {

namespace {

constexpr UChar32 replacementCharacter = 0xFFFD;
constexpr UChar32 firstStrongIsolate = 0x2068;
constexpr UChar32 popDirectionalIsolate = 0x2069;
constexpr UChar32 firstRightToLeft = 0x0590;

bool isPlain(std::string_view bytes) {
    return std::ranges::none_of(bytes,
                                [](char byte) { return (byte & 0x80) != 0 || byte < 0x20 || byte == 0x7F; });
}

bool isControl(UChar32 character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

bool isDisturbing(UChar32 character) {
    return isControl(character) || character == 0x2028 || character == 0x2029 ||
           u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL);
}

bool isRightToLeft(UChar32 character) {
    if (character < firstRightToLeft) return false;
    const UCharDirection direction = u_charDirection(character);
    return direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC ||
           direction == U_ARABIC_NUMBER;
}

}  // namespace

std::string repairedUtf8(std::string_view bytes) {
    if (isAscii(bytes)) return std::string(bytes);
    return toUtf8(toUnicode(bytes));
}

std::string shownText(std::string_view bytes) {
    if (isPlain(bytes)) return std::string(bytes);
    const icu::UnicodeString text = toUnicode(bytes);
    icu::UnicodeString shown;
    bool holdsRightToLeft = false;
    for (int32_t index = 0; index < text.length(); index = text.moveIndex32(index, 1)) {
        const UChar32 given = text.char32At(index);
        const UChar32 character = isDisturbing(given) ? replacementCharacter : given;
        holdsRightToLeft = holdsRightToLeft || isRightToLeft(character);
        shown.append(character);
    }
    if (holdsRightToLeft) shown.insert(0, firstStrongIsolate).append(popDirectionalIsolate);
    return toUtf8(shown);
}

}  // namespace vantrel::text
