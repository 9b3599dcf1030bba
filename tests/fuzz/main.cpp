// Entry of the program `fuzzer`, which libFuzzer's own main drives.
// Usage: VANTREL_FUZZ_TARGET=<name> fuzzer [libFuzzer's options] [corpus folder...]

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "fuzz/Target.h"

namespace vantrel::fuzz {
namespace {

Target chosenTarget() {
    const char* const name = std::getenv("VANTREL_FUZZ_TARGET");
    for (const auto& targets : {coreTargets(), desktopTargets()}) {
        const auto found = std::ranges::find(targets, name == nullptr ? "" : name, &Target::name);
        if (found != targets.end()) return *found;
    }
    std::fputs("VANTREL_FUZZ_TARGET must be one of\n", stderr);
    for (const auto& targets : {coreTargets(), desktopTargets()}) {
        for (const Target& target : targets) std::fprintf(stderr, "%s\n", target.name.data());
    }
    std::exit(2);
}

}  // namespace
}  // namespace vantrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const vantrel::fuzz::Target target = vantrel::fuzz::chosenTarget();
    target.run({data, size});
    return 0;
}
