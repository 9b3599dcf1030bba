#pragma once

#include <string>
#include <string_view>

namespace vantrel::fuzz {

/// UTF-8 after the letter of the Unicode Standard, section 3.9, written without the library that the program
/// uses: each maximal subpart of an ill-formed sequence becomes one U+FFFD.
std::u32string decodedUtf8(std::string_view bytes);

bool isUtf8(std::string_view bytes);

/// Whether text may be given to a canvas: UTF-8 on one line, without control characters.
bool isDrawable(std::string_view text);

}  // namespace vantrel::fuzz
