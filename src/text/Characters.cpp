#include "text/Text.h"

#include <algorithm>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

#include "base/Precondition.h"
#include "text/Unicode.h"

namespace vantrel::text {

namespace {

/// This thread's iterator over user-perceived characters, set to `text`, which must outlive its use.
icu::BreakIterator& charactersOf(const icu::UnicodeString& text) {
    thread_local const std::unique_ptr<icu::BreakIterator> characters = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> made(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        precondition(U_SUCCESS(status), "the character rules of ICU are missing");
        return made;
    }();
    characters->setText(text);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): clang 14 takes a thread_local for a local variable
    return *characters;
}

icu::UnicodeString composed(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const composer = icu::Normalizer2::getNFCInstance(status);
    precondition(U_SUCCESS(status), "the normalisation data of ICU is missing");
    return composer->normalize(text, status);
}

icu::UnicodeString foldedForPrefix(std::string_view text) {
    return composed(toUnicode(text).toLower(icu::Locale::getRoot()));
}

}  // namespace

std::string lowerCased(std::string_view text) {
    if (!isAscii(text)) return toUtf8(toUnicode(text).toLower(icu::Locale::getRoot()));
    std::string lowered(text);
    std::ranges::transform(lowered, lowered.begin(), asciiLowerCased);
    return lowered;
}

bool hasPrefixIgnoringCase(std::string_view text, std::string_view prefix) {
    if (isOneCharacterPerByte(text) && isOneCharacterPerByte(prefix)) {
        return prefix.size() <= text.size() && std::ranges::equal(prefix, text.substr(0, prefix.size()), {},
                                                                  asciiLowerCased, asciiLowerCased);
    }
    const icu::UnicodeString folded = foldedForPrefix(text);
    const icu::UnicodeString foldedPrefix = foldedForPrefix(prefix);
    return folded.startsWith(foldedPrefix) && charactersOf(folded).isBoundary(foldedPrefix.length());
}

std::size_t characterCount(std::string_view text) {
    if (isOneCharacterPerByte(text)) return text.size();
    const icu::UnicodeString unicode = toUnicode(text);
    icu::BreakIterator& characters = charactersOf(unicode);
    std::size_t count = 0;
    while (characters.next() != icu::BreakIterator::DONE) ++count;
    return count;
}

std::string lastCharacters(std::string_view text, std::size_t count) {
    if (isOneCharacterPerByte(text))
        return std::string(text.substr(text.size() - std::min(count, text.size())));
    const icu::UnicodeString unicode = toUnicode(text);
    icu::BreakIterator& characters = charactersOf(unicode);
    int32_t start = characters.last();
    for (; count > 0 && start > 0; --count) start = characters.previous();
    return toUtf8(unicode.tempSubString(start));
}

std::string firstCharacter(std::string_view text) {
    if (isOneCharacterPerByte(text)) return std::string(text.substr(0, 1));
    const icu::UnicodeString unicode = toUnicode(text);
    const int32_t end = charactersOf(unicode).next();
    return toUtf8(unicode.tempSubString(0, end));
}

bool beginsWithLetterOrNumber(std::string_view text) {
    if (text.empty()) return false;
    const UChar32 first = toUnicode(text).char32At(0);
    return (U_GET_GC_MASK(first) & (U_GC_L_MASK | U_GC_N_MASK)) != 0;
}

}  // namespace vantrel::text
