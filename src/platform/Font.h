#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantrel {

enum class FontWeight { regular, bold };

/// A face at a size, as a FontCatalog gave it. A value: it owns nothing of the desktop.
struct Font {
    std::string family;
    double size = 0;  ///< points
    FontWeight weight = FontWeight::regular;
    bool operator==(const Font&) const = default;
};

/// Port: the fonts of this desktop. Main thread only.
class FontCatalog {
public:
    virtual ~FontCatalog() = default;

    /// The regular face that answers to `name` here, or nothing. The family of the answer may differ
    /// from `name` where a desktop ships the same design under another name.
    virtual std::optional<Font> fontNamed(std::string_view name, double size) const = 0;

    /// The bold face of the font's family; the same face where the family has none.
    virtual Font convertToBold(const Font& font) const = 0;

    /// The desktop's own monospaced face; there always is one.
    virtual Font monospacedSystemFont(double size, FontWeight weight) const = 0;
};

}  // namespace vantrel
