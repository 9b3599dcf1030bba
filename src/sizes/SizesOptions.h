#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vantrel::sizes {

enum class RowOrder : std::uint8_t { largestFirst, byName };

enum class NumberStyle : std::uint8_t { humanReadable, bytes };

/// What the command line asks for.
struct Options {
    NumberStyle numbers = NumberStyle::humanReadable;
    RowOrder order = RowOrder::largestFirst;
    std::vector<std::string> folders;  ///< raw bytes, in the order given; "." when none was
    bool operator==(const Options&) const = default;
};

struct HelpRequest {
    bool operator==(const HelpRequest&) const = default;
};

struct VersionRequest {
    bool operator==(const VersionRequest&) const = default;
};

/// A line for the user about an argument that makes no sense.
struct UsageError {
    std::string message;
    bool operator==(const UsageError&) const = default;
};

using Request = std::variant<Options, HelpRequest, VersionRequest, UsageError>;

/// `arguments` without the program's name. Options may stand anywhere before "--". Pure; any thread.
Request parseArguments(const std::vector<std::string>& arguments);

}  // namespace vantrel::sizes
