#include <gtest/gtest.h>

#include "fuzz/Replay.h"

// What libFuzzer tries for minutes, tried in every test run on a corpus and on some random inputs.

namespace vantrel::fuzz {
namespace {

class CoreTargets : public testing::TestWithParam<Target> {};

TEST_P(CoreTargets, keepTheirRulesOnTheCorpus) {
    replayCorpus(GetParam());
}

TEST_P(CoreTargets, keepTheirRulesOnRandomInputs) {
    tryRandomInputs(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Fuzz, CoreTargets, testing::ValuesIn(coreTargets()), nameOf);

}  // namespace
}  // namespace vantrel::fuzz
