#pragma once

#include <gtest/gtest.h>

#include <string>

#include "fuzz/Target.h"

namespace vantrel::fuzz {

/// The target on every file of its corpus. A broken rule is a failure of the test that names the file.
void replayCorpus(const Target& target);

/// The target on inputs that are the same in every run: bytes at random, and changed files of its corpus.
/// VANTREL_LONG_TESTS in the environment makes them many times as many.
void tryRandomInputs(const Target& target);

/// For the names of tests: letters and digits only.
std::string nameOf(const testing::TestParamInfo<Target>& target);

}  // namespace vantrel::fuzz
