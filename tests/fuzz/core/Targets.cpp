#include "fuzz/core/Targets.h"

#include <array>

namespace vantrel::fuzz {

std::span<const Target> coreTargets() {
    static constexpr std::array targets{
        Target{"paths", tryPaths, 2000},
        Target{"tilde", tryTilde, 2000},
        Target{"text", tryText, 2000},
        Target{"size-texts", trySizeTexts, 2000},
        Target{"natural-order", tryNaturalOrder, 2000},
        Target{"item-order", tryItemOrder, 1000},
        Target{"program", tryProgram, 200},
    };
    return targets;
}

}  // namespace vantrel::fuzz
