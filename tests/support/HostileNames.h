#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel::test {

/// `count` different names that a file system takes and that programs stumble over, the same ones each time:
/// a fixed list, every length up to 255 of one, two and four byte characters and of bytes that are no text,
/// and random bytes.
std::vector<std::string> hostileNames(std::size_t count);

/// Why a text must not be drawn: broken UTF-8, a control character, a separator of lines or an unpaired
/// control of the writing direction. Empty when it may.
std::string harmIn(std::string_view text);

/// The bytes that "%" and two digits stand for.
std::string percentDecoded(std::string_view text);

}  // namespace vantrel::test
