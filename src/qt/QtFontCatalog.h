#pragma once

#include <QString>
#include <functional>

#include "platform/Font.h"

namespace vantrel {

/// The fonts that are really installed. The system's font matching is never asked to find a replacement,
/// since it may answer with a proportional face. Main thread only.
class QtFontCatalog final : public FontCatalog {
public:
    using IsInstalled = std::function<bool(const QString& family)>;

    QtFontCatalog();
    explicit QtFontCatalog(IsInstalled isInstalled);

    std::optional<Font> fontNamed(std::string_view name, double size) const override;
    Font convertToBold(const Font& font) const override;
    Font monospacedSystemFont(double size, FontWeight weight) const override;

private:
    IsInstalled isInstalled_;
};

}  // namespace vantrel
