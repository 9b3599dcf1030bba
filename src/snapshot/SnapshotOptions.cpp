#include "snapshot/SnapshotOptions.h"

#include <charconv>
#include <string_view>

namespace vantrel {

namespace {

template <class Number>
std::optional<Number> numberFrom(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

bool readSize(std::string_view text, SnapshotOptions& options) {
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) return false;
    const auto width = numberFrom<int>(text.substr(0, cross));
    const auto height = numberFrom<int>(text.substr(cross + 1));
    if (!width || !height || *width < 1 || *height < 1 || *width > 16'384 || *height > 16'384) return false;
    options.width = *width;
    options.height = *height;
    return true;
}

bool readScale(std::string_view text, SnapshotOptions& options) {
    const auto scale = numberFrom<double>(text);
    if (!scale || !(*scale >= 0.5) || *scale > 8) return false;
    options.scale = *scale;
    return true;
}

bool readOption(const std::string& name, const std::string& value, SnapshotOptions& options) {
    if (name == "--size") return readSize(value, options);
    if (name == "--scale") return readScale(value, options);
    if (name == "--press") {
        options.keys.push_back(value);
        return true;
    }
    options.file = value;
    return !value.empty();
}

}  // namespace

std::optional<SnapshotOptions> parseSnapshotOptions(const std::vector<std::string>& arguments) {
    SnapshotOptions options;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "-o" || argument == "--size" || argument == "--scale" || argument == "--press") {
            if (++i == arguments.size() || !readOption(argument, arguments[i], options)) return std::nullopt;
        } else if (argument.starts_with("-") || options.folders.size() == 2) {
            return std::nullopt;
        } else {
            options.folders.push_back(argument);
        }
    }
    if (options.file.empty()) return std::nullopt;
    return options;
}

}  // namespace vantrel
