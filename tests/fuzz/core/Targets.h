#pragma once

#include <cstdint>
#include <span>

#include "fuzz/Target.h"

/// The targets of the core, one file for each.
namespace vantrel::fuzz {

void tryPaths(std::span<const std::uint8_t> bytes);
void tryTilde(std::span<const std::uint8_t> bytes);
void tryText(std::span<const std::uint8_t> bytes);
void trySizeTexts(std::span<const std::uint8_t> bytes);
void tryNaturalOrder(std::span<const std::uint8_t> bytes);
void tryItemOrder(std::span<const std::uint8_t> bytes);
void tryProgram(std::span<const std::uint8_t> bytes);

}  // namespace vantrel::fuzz
