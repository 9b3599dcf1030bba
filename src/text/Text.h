#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/FileTime.h"

/// Language rules, wrapped once around ICU. Names and paths come in as raw bytes; what is returned is valid
/// UTF-8 unless said otherwise. Nothing fails: broken input is repaired, a missing locale falls back to
/// English. The user's locale is read from the environment at each call: LC_ALL, then the category
/// (LC_COLLATE, LC_NUMERIC, LC_TIME), then LANG; "C" and "POSIX" mean English. Any thread.
namespace vantrel::text {

/// Whether a byte of UTF-8 belongs to a code point that an earlier byte has begun.
constexpr bool continuesCodePoint(char byte) {
    return (byte & 0xC0) == 0x80;
}

/// UTF-8 with each maximal broken sequence replaced by one U+FFFD (the practice that the Unicode Standard
/// recommends, section 3.9). Nothing else is changed.
std::string repairedUtf8(std::string_view bytes);

/// The text of a name or path as it may be drawn: repaired, on one line, unable to disturb its surroundings.
/// Control characters, line and paragraph separators and bidirectional controls (marks, embeddings,
/// overrides, isolates) become U+FFFD, which the usual fonts have; the pictures of control characters most
/// lack. Text that holds right-to-left characters is put between FIRST STRONG ISOLATE and POP DIRECTIONAL
/// ISOLATE, so that it does not turn what stands beside it. Never a path again.
std::string shownText(std::string_view bytes);

/// A key for natural order: comparing two keys bytewise orders the names the way a person expects - letter
/// case counts only between otherwise equal names, runs of digits by value, by the user's language. Different
/// names always have different keys. The key is bytes, not text.
std::string naturalSortKey(std::string_view name);

/// Lower case by the root locale's full mapping, independent of the user's language.
std::string lowerCased(std::string_view text);

/// Whether `text` begins with `prefix` when letter case and the spelling of composed characters are ignored.
/// A prefix that ends inside a user-perceived character does not match. An empty prefix matches.
bool hasPrefixIgnoringCase(std::string_view text, std::string_view prefix);

/// Number of user-perceived characters (extended grapheme clusters, UAX #29).
std::size_t characterCount(std::string_view text);

/// The last `count` user-perceived characters; all of them when there are fewer.
std::string lastCharacters(std::string_view text, std::size_t count);

/// The first user-perceived character, "" when there is none.
std::string firstCharacter(std::string_view text);

/// Whether the first code point is of a general category L* or N*.
bool beginsWithLetterOrNumber(std::string_view text);

/// Decimal digits grouped by the user's locale (LC_NUMERIC).
std::string groupedDecimal(std::int64_t value);

/// `date` in the user's time zone and locale (LC_TIME) by an ICU date pattern such as "yyyy-MM-dd" or
/// "HH:mm". The time zone is the C library's, so every TZ that POSIX allows means the same here. Today's
/// calendar goes on into the past; what lies before the year 1 or after 9999 is shown as the first or the
/// last moment of these.
std::string formattedDate(FileTime date, std::string_view pattern);

}  // namespace vantrel::text
