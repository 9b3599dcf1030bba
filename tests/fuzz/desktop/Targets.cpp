#include "fuzz/desktop/Targets.h"

#include <array>

namespace vantrel::fuzz {

std::span<const Target> desktopTargets() {
    static constexpr std::array targets{
        Target{"key-map", tryKeyMap, 2000},
        Target{"trash-info", tryTrashInfo, 500},
    };
    return targets;
}

}  // namespace vantrel::fuzz
