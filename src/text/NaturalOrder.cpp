#include "text/Text.h"

#include <array>
#include <memory>

#include <unicode/coll.h>
#include <unicode/uchar.h>

#include "text/Unicode.h"
#include "text/UserLocale.h"

namespace vantrel::text {

namespace {

std::unique_ptr<icu::Collator> makeCollator(std::string_view localeName) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(localeNamed(localeName), status));
    if (U_FAILURE(status)) return nullptr;
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    collator->setAttribute(UCOL_STRENGTH, UCOL_TERTIARY, status);
    collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    return collator;
}

/// This thread's collator for the user's language, made anew when the language has changed; null when ICU's
/// data is missing.
const icu::Collator* userCollator() {
    // One for each thread: making one takes milliseconds, and threads never wait for each other this way.
    thread_local std::string cachedName;
    thread_local std::unique_ptr<icu::Collator> cached;
    const std::string_view name = userLocaleName("LC_COLLATE");
    if (cached == nullptr || cachedName != name) {
        cachedName = name;
        cached = makeCollator(name);
    }
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): clang 14 takes a thread_local for a local variable
    return cached.get();
}

/// ICU's sort key with the zero byte that ends it, appended to `key`.
void appendCollationKey(const icu::Collator& collator, const icu::UnicodeString& text, std::string& key) {
    std::array<uint8_t, 512> buffer;
    const int32_t size = collator.getSortKey(text, buffer.data(), static_cast<int32_t>(buffer.size()));
    if (size <= static_cast<int32_t>(buffer.size())) {
        key.append(buffer.begin(), buffer.begin() + size);
        return;
    }
    std::string larger(static_cast<std::size_t>(size), '\0');
    collator.getSortKey(text, reinterpret_cast<uint8_t*>(larger.data()), size);
    key += larger;
}

// ICU compares digits by value up to so many, and further ones as a number of their own.
constexpr std::size_t longestNumber = 254;

// Sorts after everything else (Unicode Collation, CLDR root).
constexpr UChar32 last = 0xFFFF;

/// Whether there may be a number that is too long, for which a name has to be long itself.
bool mayHoldLongNumber(const icu::UnicodeString& text) {
    return text.countChar32() > static_cast<int32_t>(longestNumber);
}

/// A number of more digits as text that sorts after all shorter ones, by its length and then by its digits:
/// each piece, the largest number of all first, is one that ICU compares by value.
icu::UnicodeString longNumber(const std::string& digits) {
    icu::UnicodeString text = icu::UnicodeString::fromUTF8(std::string(longestNumber, '9')).append(last);
    text.append(icu::UnicodeString::fromUTF8(std::to_string(digits.size())));
    for (std::size_t at = 0; at < digits.size(); at += longestNumber)
        text.append(last).append(icu::UnicodeString::fromUTF8(digits.substr(at, longestNumber)));
    return text;
}

/// `text` with every number that is too long for ICU in pieces.
icu::UnicodeString withLongNumbersInPieces(const icu::UnicodeString& text) {
    icu::UnicodeString result;
    for (int32_t at = 0; at < text.length();) {
        std::string digits;
        int32_t end = at;
        for (; end < text.length() && u_isdigit(text.char32At(end)); end = text.moveIndex32(end, 1)) {
            const int32_t digit = u_charDigitValue(text.char32At(end));
            if (digit != 0 || !digits.empty()) digits += static_cast<char>('0' + digit);
        }
        if (digits.size() > longestNumber) {
            result.append(longNumber(digits));
        } else {
            if (end == at) end = text.moveIndex32(at, 1);
            result.append(text, at, end - at);
        }
        at = end;
    }
    return result;
}

}  // namespace

std::string naturalSortKey(std::string_view name) {
    std::string key;
    if (const icu::Collator* const collator = userCollator()) {
        icu::UnicodeString text = toUnicode(name);
        if (mayHoldLongNumber(text)) text = withLongNumbersInPieces(text);
        appendCollationKey(*collator, text, key);
    }
    // The collation key holds no zero byte but its last one, so what follows decides only between names that
    // the language does not tell apart.
    key += name;
    return key;
}

}  // namespace vantrel::text
