#pragma once

#include <cstdint>

namespace vantrel {

/// A value; any thread. How sizes are written: with a binary unit letter, or as the exact count of bytes.
enum class SizeDisplayMode : std::uint8_t { humanReadable, rawBytes };

constexpr void toggle(SizeDisplayMode& mode) {
    mode =
        mode == SizeDisplayMode::humanReadable ? SizeDisplayMode::rawBytes : SizeDisplayMode::humanReadable;
}

}  // namespace vantrel
