#pragma once

#include <map>
#include <string>
#include <vector>

namespace vantrel::test {

/// What stands at a path and below it: for each relative path ("" is the item itself) its kind, permission
/// bits, modification date and content or link target. Nothing is followed. Empty when there is nothing.
using TreeSnapshot = std::map<std::string, std::string>;
TreeSnapshot snapshotOf(const std::string& path);

/// Names of the entries of a folder, sorted.
std::vector<std::string> namesIn(const std::string& path);

}  // namespace vantrel::test
