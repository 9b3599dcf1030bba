#include "qt/QtFontCatalog.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>
#include <algorithm>
#include <utility>

namespace vantrel {

namespace {

/// Families that carry the design known by `name`, best first. DejaVu Sans Mono and Menlo both descend from
/// Bitstream Vera Sans Mono; the stand-ins for Courier have its metrics.
QStringList familiesFor(const QString& name) {
    if (name == QLatin1String("Menlo")) return {name, "DejaVu Sans Mono"};
    if (name == QLatin1String("Courier"))
        return {name, "Nimbus Mono PS", "Nimbus Mono L", "TeX Gyre Cursor", "Courier New", "Liberation Mono"};
    return {name};
}

bool hasBoldFace(const QString& family) {
    const QStringList styles = QFontDatabase::styles(family);
    return std::ranges::any_of(styles, [&](const QString& style) {
        return QFontDatabase::bold(family, style) && !QFontDatabase::italic(family, style);
    });
}

QString monospacedFamily() {
    QString usual = QFontInfo(QFontDatabase::systemFont(QFontDatabase::FixedFont)).family();
    if (QFontDatabase::isFixedPitch(usual)) return usual;
    for (const char* family : {"DejaVu Sans Mono", "Liberation Mono", "Noto Sans Mono", "FreeMono"}) {
        if (QFontDatabase::hasFamily(family)) return family;
    }
    const QStringList families = QFontDatabase::families();
    const auto found = std::ranges::find_if(
        families, [](const QString& family) { return QFontDatabase::isFixedPitch(family); });
    return found == families.end() ? usual : *found;
}

}  // namespace

QtFontCatalog::QtFontCatalog() : QtFontCatalog(&QFontDatabase::hasFamily) {}

QtFontCatalog::QtFontCatalog(IsInstalled isInstalled) : isInstalled_(std::move(isInstalled)) {}

std::optional<Font> QtFontCatalog::fontNamed(std::string_view name, double size) const {
    const QStringList families =
        familiesFor(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    const auto found = std::ranges::find_if(families, isInstalled_);
    if (found == families.end()) return std::nullopt;
    return Font{found->toStdString(), size, FontWeight::regular};
}

Font QtFontCatalog::convertToBold(const Font& font) const {
    if (!hasBoldFace(QString::fromStdString(font.family))) return font;
    return {font.family, font.size, FontWeight::bold};
}

Font QtFontCatalog::monospacedSystemFont(double size, FontWeight weight) const {
    return {monospacedFamily().toStdString(), size, weight};
}

}  // namespace vantrel
