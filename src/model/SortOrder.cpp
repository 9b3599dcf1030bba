#include "model/SortOrder.h"

#include <algorithm>

#include "base/Precondition.h"

namespace vantrel {

std::string_view rawValue(SortField field) {
    switch (field) {
        case SortField::name:
            return "Name";
        case SortField::size:
            return "Size";
        case SortField::date:
            return "Date";
        case SortField::ext:
            return "Extension";
    }
    fatalError("a sort field that does not exist");
}

std::optional<SortField> sortFieldFromRawValue(std::string_view wanted) {
    const auto found = std::ranges::find(allSortFields, wanted, rawValue);
    if (found == allSortFields.end()) return std::nullopt;
    return *found;
}

}  // namespace vantrel
