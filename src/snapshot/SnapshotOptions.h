#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vantrel {

/// What the snapshot program was asked for.
struct SnapshotOptions {
    std::vector<std::string> folders;  ///< up to two, raw bytes
    std::string file;                  ///< of the picture, PNG
    int width = 1100;                  ///< points
    int height = 720;                  ///< points
    double scale = 1;                  ///< pixels per point
    std::vector<std::string> keys;     ///< pressed one after the other before the picture is taken
};

/// Reads a command line, the program's name first; nothing where it makes no sense. Pure; any thread.
std::optional<SnapshotOptions> parseSnapshotOptions(const std::vector<std::string>& arguments);

}  // namespace vantrel
