#include "model/Uuid.h"

#include <random>

namespace vantrel {

namespace {

// Identity within one process is all that is asked of it, so a seeded generator will do: a folder of
// 100,000 entries must not cost 100,000 calls for random bytes.
std::mt19937_64 seededGenerator() {
    std::random_device device;
    std::seed_seq seed{device(), device(), device(), device()};
    return std::mt19937_64(seed);
}

}  // namespace

Uuid Uuid::random() {
    thread_local std::mt19937_64 generator = seededGenerator();
    constexpr std::uint64_t versionMask = 0xF000;
    constexpr std::uint64_t version4 = 0x4000;
    constexpr std::uint64_t variantMask = 0xC000'0000'0000'0000;
    constexpr std::uint64_t variant = 0x8000'0000'0000'0000;
    return {{(generator() & ~versionMask) | version4, (generator() & ~variantMask) | variant}};
}

}  // namespace vantrel
