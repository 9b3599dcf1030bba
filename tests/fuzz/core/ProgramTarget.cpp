#include "fuzz/Input.h"
#include "fuzz/core/Program.h"
#include "fuzz/core/Targets.h"

namespace vantrel::fuzz {

void tryProgram(std::span<const std::uint8_t> bytes) {
    constexpr int mostSteps = 400;
    Input input(bytes);
    Program program(input);
    for (int step = 0; step < mostSteps && !input.isEmpty(); ++step) program.step(input);
    program.settle();
}

}  // namespace vantrel::fuzz
