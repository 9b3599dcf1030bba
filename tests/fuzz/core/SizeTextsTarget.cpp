#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/Input.h"
#include "fuzz/Utf8.h"
#include "fuzz/core/Targets.h"
#include "model/FileItem.h"
#include "support/ScopedEnvironment.h"

namespace vantrel::fuzz {

namespace {

constexpr std::array locales{"C",           "en_US.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8", "hi_IN.UTF-8",
                             "ar_EG.UTF-8", "fa_IR.UTF-8", "de_CH.UTF-8", "xx_YY",       "es_ES@euro"};

struct Unit {
    std::string_view suffix;
    double size;
    double step;  ///< of the last decimal place, in units
};

constexpr std::array units{Unit{" K", 0x1p10, 0.1}, Unit{" M", 0x1p20, 0.1}, Unit{" G", 0x1p30, 0.01},
                           Unit{" T", 0x1p40, 0.01}};

void checkHumanReadable(std::int64_t bytes) {
    const std::string text = FileItem::formatBytes(bytes, SizeDisplayMode::humanReadable);
    require(text.size() >= 7, "a size fills its column");
    const std::string number = text.substr(text.find_first_not_of(' '));
    if (bytes < 1024) {
        require(number == std::to_string(bytes) + " B ", "small sizes are exact");
        return;
    }
    for (const Unit& unit : units) {
        if (!number.ends_with(unit.suffix)) continue;
        double value = 0;
        const auto end = std::from_chars(number.data(), number.data() + number.size(), value).ptr;
        require(end == number.data() + number.size() - unit.suffix.size(), "a number stands before the unit");
        const double distance = std::abs(value - static_cast<double>(bytes) / unit.size);
        require(distance <= unit.step * 0.5000001, "a size is rounded to its last place");
        require(static_cast<double>(bytes) >= unit.size, "a unit is not too large");
        require(static_cast<double>(bytes) < unit.size * 1024 || unit.suffix == " T", "nor too small");
        return;
    }
    throw Violation("a size has a unit");
}

/// -1 for what is no decimal digit.
int digitValue(char32_t character) {
    for (const char32_t zero : {U'0', U'\u0660', U'\u06F0', U'\u0966'}) {
        if (character >= zero && character < zero + 10) return static_cast<int>(character - zero);
    }
    return -1;
}

void checkExact(std::int64_t bytes) {
    const std::string text = FileItem::formatBytes(bytes, SizeDisplayMode::rawBytes);
    require(text.ends_with(" B"), "an exact size counts bytes");
    std::string digits;
    for (const char32_t character : decodedUtf8(text)) {
        if (const int value = digitValue(character); value >= 0) digits += static_cast<char>('0' + value);
    }
    require(digits == std::to_string(bytes), "grouping changes no digit");
}

void checkColumn(Input& input, std::int64_t bytes) {
    const std::array<VantrelState, 5> states{state::Calculating{bytes, 1}, state::Calculated{bytes, 1},
                                             state::Error{input.text(3)}, state::NotCalculated{},
                                             state::Parent{}};
    const auto frame = static_cast<std::int64_t>(input.number() & INT64_MAX);
    for (const SizeDisplayMode mode : {SizeDisplayMode::humanReadable, SizeDisplayMode::rawBytes}) {
        const std::string size = FileItem::formatBytes(bytes, mode);
        for (const VantrelState& state : states) {
            const FileItem folder({.name = "f", .path = "/f", .isDirectory = true, .vantrelState = state});
            const std::string text = folder.formattedSize(mode, frame);
            require(isDrawable(text) && !text.empty(), "the size column can be drawn");
            require(!isCalculated(state) || text == size, "a total is the size alone");
            require(!isCalculating(state) || bytes == 0 || text.ends_with("] " + size), "a running one too");
        }
        const FileItem file({.name = "f", .path = "/f", .size = bytes});
        require(file.formattedSize(mode, frame) == size, "a file shows its size");
    }
}

void checkDate(std::int64_t number) {
    // Any second of the years that have four digits.
    constexpr std::int64_t first = -62'135'596'800;
    constexpr std::int64_t last = 253'402'300'799;
    const auto second =
        static_cast<std::int64_t>(static_cast<std::uint64_t>(number) % (last - first + 1)) + first;
    const FileTime moment{FileTime::duration(std::chrono::seconds(second))};
    const FileItem item({.name = "f", .path = "/f", .modDate = moment});
    require(isDrawable(item.formattedDate()) && isDrawable(item.formattedTime()), "dates can be drawn");
    const test::ScopedLocale english("en_US.UTF-8");
    const test::ScopedEnvironment zone("TZ", "UTC");
    const auto minute =
        std::chrono::floor<std::chrono::minutes>(std::chrono::sys_seconds(std::chrono::seconds(second)));
    const auto day = std::chrono::floor<std::chrono::days>(minute);
    const std::chrono::year_month_day date(day);
    const auto minutes = (minute - day).count();
    std::array<char, 64> expected{};
    std::snprintf(expected.data(), expected.size(), "%04d-%02u-%02u %02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(minutes / 60), static_cast<int>(minutes % 60));
    require(item.formattedDate() + " " + item.formattedTime() == expected.data(),
            "a date is that of its day");
}

}  // namespace

void trySizeTexts(std::span<const std::uint8_t> bytes) {
    Input input(bytes);
    const test::ScopedLocale locale(input.oneOf(locales));
    const std::int64_t size = input.size();
    for (const std::int64_t near : {size, size ^ 1, std::int64_t{1} << input.below(63)}) {
        checkHumanReadable(near);
        checkExact(near);
    }
    checkColumn(input, size);
    checkDate(static_cast<std::int64_t>(input.number()));
}

}  // namespace vantrel::fuzz
