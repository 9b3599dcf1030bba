#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantrel {

/// What has become of the process that made a mark. `unknown`: it is not a mark, or it comes from another
/// container, whose processes cannot be seen from here.
enum class MarkedProcess : std::uint8_t { thisOne, running, ended, unknown };

/// A text to put into the name of something that belongs to this process for a while: it tells the boot and
/// the process and ends with something random, so that no two are alike. Letters, digits, dots. Any thread.
std::string processMark();

/// Asks the system about the process that made the mark. Any thread.
MarkedProcess processOf(std::string_view mark);

}  // namespace vantrel
