#include "model/engine/HumanReadableBytes.h"

#include <array>
#include <charconv>
#include <string_view>

namespace vantrel {

namespace {

std::string padded(std::string_view text, std::size_t width) {
    std::string result(text.size() < width ? width - text.size() : 0, ' ');
    result += text;
    return result;
}

// printf would take the decimal point from the C locale, which the desktop's toolkit sets.
std::string fixedPoint(double value, int decimals) {
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, decimals);
    return {digits.data(), end.ptr};
}

}  // namespace

std::string humanReadableBytes(std::int64_t bytes) {
    struct Unit {
        std::int64_t size;
        int decimals;
        const char* suffix;
    };
    static constexpr std::array units{
        Unit{std::int64_t{1} << 40, 2, " T"}, Unit{std::int64_t{1} << 30, 2, " G"},
        Unit{std::int64_t{1} << 20, 1, " M"}, Unit{std::int64_t{1} << 10, 1, " K"}};
    for (const Unit& unit : units) {
        if (bytes < unit.size) continue;
        const double value = static_cast<double>(bytes) * (1.0 / static_cast<double>(unit.size));
        return padded(fixedPoint(value, unit.decimals), 6) + unit.suffix;
    }
    return padded(std::to_string(bytes), 4) + " B ";
}

}  // namespace vantrel
