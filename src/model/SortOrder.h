#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace vantrel {

/// What a panel is sorted by. Values and pure functions; any thread.
enum class SortField : std::uint8_t { name, size, date, ext };

/// All fields, in the order in which they are offered.
inline constexpr std::array allSortFields{SortField::name, SortField::size, SortField::date, SortField::ext};

/// "Name", "Size", "Date", "Extension".
std::string_view rawValue(SortField field);

/// The field with exactly that raw value (letter case counts), or nothing.
std::optional<SortField> sortFieldFromRawValue(std::string_view rawValue);

enum class SortDirection : std::uint8_t { ascending, descending };

constexpr void toggle(SortDirection& direction) {
    direction = direction == SortDirection::ascending ? SortDirection::descending : SortDirection::ascending;
}

}  // namespace vantrel

/// A field is hashed by its raw value.
template <>
struct std::hash<vantrel::SortField> {
    std::size_t operator()(vantrel::SortField field) const noexcept {
        return std::hash<std::string_view>()(vantrel::rawValue(field));
    }
};
