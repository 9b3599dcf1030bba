#include "fuzz/Replay.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "support/TemporaryFolder.h"

namespace vantrel::fuzz {

namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t longestRandomInput = 400;
constexpr int timesInLongTests = 25;

struct Seed {
    std::string name;
    Bytes bytes;
};

std::vector<Seed> corpusOf(const Target& target) {
    std::vector<Seed> corpus;
    for (const auto& entry : fs::directory_iterator(fs::path(VANTREL_FUZZ_CORPUS) / target.name)) {
        const std::string content = test::contentOf(entry.path());
        corpus.push_back({entry.path().filename(), {content.begin(), content.end()}});
    }
    std::ranges::sort(corpus, {}, &Seed::name);
    return corpus;
}

/// Numbers that are the same on every machine, which the distributions of the standard library are not.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : engine_(seed) {}
    std::size_t below(std::size_t count) { return engine_() % count; }
    std::uint8_t byte() { return static_cast<std::uint8_t>(engine_()); }

private:
    std::mt19937_64 engine_;
};

Bytes randomBytes(Dice& dice) {
    Bytes bytes(dice.below(longestRandomInput));
    std::ranges::generate(bytes, [&] { return dice.byte(); });
    return bytes;
}

Bytes changed(Bytes bytes, Dice& dice) {
    for (std::size_t changes = 1 + dice.below(8); changes > 0; --changes) {
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(dice.below(bytes.size() + 1));
        if (place == bytes.end() || dice.below(3) == 0) {
            bytes.insert(place, dice.byte());
        } else if (dice.below(2) == 0) {
            bytes.erase(place);
        } else {
            *place = dice.byte();
        }
    }
    return bytes;
}

/// Whether the rules held.
bool holdsFor(const Target& target, const Bytes& bytes, const std::string& what) {
    try {
        target.run(bytes);
        return true;
    } catch (const Violation& violation) {
        ADD_FAILURE() << "Broken: " << violation.what() << ", by " << what << " of " << target.name;
        return false;
    }
}

}  // namespace

void replayCorpus(const Target& target) {
    const std::vector<Seed> corpus = corpusOf(target);
    EXPECT_FALSE(corpus.empty());
    for (const Seed& seed : corpus) holdsFor(target, seed.bytes, "the corpus file " + seed.name);
}

void tryRandomInputs(const Target& target) {
    const std::vector<Seed> corpus = corpusOf(target);
    const int inputs = target.inputs * (std::getenv("VANTREL_LONG_TESTS") != nullptr ? timesInLongTests : 1);
    for (int number = 0; number < inputs; ++number) {
        Dice dice(static_cast<std::uint64_t>(number));
        const bool startsFromCorpus = number % 2 == 0 && !corpus.empty();
        const Bytes bytes =
            startsFromCorpus ? changed(corpus[dice.below(corpus.size())].bytes, dice) : randomBytes(dice);
        // One is enough to go by.
        if (!holdsFor(target, bytes, "the random input " + std::to_string(number))) return;
    }
}

std::string nameOf(const testing::TestParamInfo<Target>& target) {
    std::string name(target.param.name);
    std::erase(name, '-');
    return name;
}

}  // namespace vantrel::fuzz
