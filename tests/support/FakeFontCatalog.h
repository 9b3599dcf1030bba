#pragma once

#include <set>
#include <string>

#include "platform/Font.h"

namespace vantrel::test {

/// A desktop with the named families installed. "System Mono" is its monospaced face.
class FakeFontCatalog final : public FontCatalog {
public:
    FakeFontCatalog() = default;
    explicit FakeFontCatalog(std::set<std::string, std::less<>> installed)
        : installed_(std::move(installed)) {}

    std::optional<Font> fontNamed(std::string_view name, double size) const override {
        if (!installed_.contains(name)) return std::nullopt;
        return Font{std::string(name), size, FontWeight::regular};
    }

    Font convertToBold(const Font& font) const override {
        if (withoutBoldFace.contains(font.family)) return font;
        return {font.family, font.size, FontWeight::bold};
    }

    Font monospacedSystemFont(double size, FontWeight weight) const override {
        return {"System Mono", size, weight};
    }

    std::set<std::string, std::less<>> withoutBoldFace;

private:
    std::set<std::string, std::less<>> installed_ = {"Menlo"};
};

}  // namespace vantrel::test
