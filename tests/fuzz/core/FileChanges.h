#pragma once

#include "fuzz/Input.h"
#include "support/FakeFileManager.h"

namespace vantrel::fuzz {

/// Some folders and files to begin with, on a volume that is soon full, so that one run stays short.
void fill(test::FakeFileManager& files);

/// What another program might do: something comes, goes, grows, or becomes of another kind.
void change(test::FakeFileManager& files, Input& input);

/// One of the next calls fails for a reason chosen by `input`.
void planFault(test::FakeFileManager& files, Input& input);

}  // namespace vantrel::fuzz
