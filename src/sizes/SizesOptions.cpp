#include "sizes/SizesOptions.h"

#include <optional>
#include <string_view>

namespace vantrel::sizes {

namespace {

std::optional<RowOrder> rowOrder(std::string_view word) {
    if (word == "size") return RowOrder::largestFirst;
    if (word == "name") return RowOrder::byName;
    return std::nullopt;
}

constexpr std::string_view sortOption = "--sort";

}  // namespace

Request parseArguments(const std::vector<std::string>& arguments) {
    Options options;
    auto argument = arguments.begin();
    for (; argument != arguments.end(); ++argument) {
        if (*argument == "--") {
            ++argument;
            break;
        }
        if (*argument == "--help") return HelpRequest{};
        if (*argument == "--version") return VersionRequest{};
        if (*argument == "--bytes") {
            options.numbers = NumberStyle::bytes;
        } else if (argument->starts_with(sortOption)) {
            std::string word = argument->substr(sortOption.size());
            if (word.empty()) {
                if (++argument == arguments.end()) return UsageError{"--sort needs \"size\" or \"name\""};
                word = "=" + *argument;
            }
            const auto order = word.front() == '=' ? rowOrder(word.substr(1)) : std::nullopt;
            if (!order) return UsageError{"--sort takes \"size\" or \"name\""};
            options.order = *order;
        } else if (argument->size() > 1 && argument->front() == '-') {
            return UsageError{"unknown option \"" + *argument + "\""};
        } else {
            options.folders.push_back(*argument);
        }
    }
    options.folders.insert(options.folders.end(), argument, arguments.end());
    if (options.folders.empty()) options.folders.emplace_back(".");
    return options;
}

}  // namespace vantrel::sizes
