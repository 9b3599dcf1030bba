#include <gtest/gtest.h>

#include "fuzz/Replay.h"

// What libFuzzer tries for minutes, tried in every test run on a corpus and on some random inputs.

namespace vantrel::fuzz {
namespace {

class DesktopTargets : public testing::TestWithParam<Target> {};

TEST_P(DesktopTargets, keepTheirRulesOnTheCorpus) {
    replayCorpus(GetParam());
}

TEST_P(DesktopTargets, keepTheirRulesOnRandomInputs) {
    tryRandomInputs(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Fuzz, DesktopTargets, testing::ValuesIn(desktopTargets()), nameOf);

}  // namespace
}  // namespace vantrel::fuzz
