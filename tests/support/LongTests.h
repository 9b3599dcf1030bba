#pragma once

#include <cstdlib>

namespace vantrel::test {

/// How often or how large: `usually`, or `inLongRun` where the environment has VANTREL_LONG_TESTS=1.
inline int byPatience(int usually, int inLongRun) {
    const char* const patience = std::getenv("VANTREL_LONG_TESTS");
    return patience != nullptr && *patience == '1' ? inLongRun : usually;
}

}  // namespace vantrel::test
