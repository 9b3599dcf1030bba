#pragma once

#include <cstdint>
#include <string>

namespace vantrel {

/// A count of bytes with a binary unit letter, padded to the width of a size column. Needs no language rules
/// and so no ICU, which takes longer to load than a small folder takes to count. Any thread.
std::string humanReadableBytes(std::int64_t bytes);

}  // namespace vantrel
