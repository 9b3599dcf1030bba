#include "theme/OvPalette.h"

#include <optional>

namespace vantrel {

Font OvPalette::retroFont(const FontCatalog& fonts, double size, FontWeight weight) {
    for (const std::string_view name : {"Menlo", "SF Mono", "Courier"}) {
        if (const std::optional<Font> font = fonts.fontNamed(name, size)) {
            return weight == FontWeight::bold ? fonts.convertToBold(*font) : *font;
        }
    }
    return fonts.monospacedSystemFont(size, weight);
}

}  // namespace vantrel
