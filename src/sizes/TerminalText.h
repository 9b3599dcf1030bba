#pragma once

#include <string>
#include <string_view>

namespace vantrel::sizes {

/// A path as a terminal may get it: what is not UTF-8, controls (C0, DEL, C1), line and paragraph separators
/// and bidirectional controls become question marks, one for each character or broken byte. Pure;
/// any thread.
std::string terminalText(std::string_view path);

}  // namespace vantrel::sizes
