#pragma once

#include <cstdint>
#include <span>

#include "fuzz/Target.h"

/// The targets that need more than the core, one file for each.
namespace vantrel::fuzz {

void tryKeyMap(std::span<const std::uint8_t> bytes);
void tryTrashInfo(std::span<const std::uint8_t> bytes);

}  // namespace vantrel::fuzz
