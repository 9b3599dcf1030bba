#include "qt/preview/PreviewWords.h"

#include <QLocale>

#include "text/UserLocale.h"

namespace vantrel::previewWords {

namespace {

constexpr quint64 kibibyte = 1024;
const QString separator = QStringLiteral("  \u00B7  ");
const QString datePattern = QStringLiteral("yyyy-MM-dd HH:mm");

/// The user's locale for one category such as "LC_TIME". QLocale() would use the language's locale for all,
/// and would not group digits where that is "C".
QLocale userLocale(const char* category) {
    const std::string_view name = text::userLocaleName(category);
    const QLocale locale(QString::fromLocal8Bit(name.data(), static_cast<qsizetype>(name.size())));
    if (locale.language() != QLocale::C) return locale;
    return {QLocale::English, QLocale::UnitedStates};
}

QString kind(const PreviewFacts& facts) {
    return facts.kind.left(1).toUpper() + facts.kind.mid(1);
}

}  // namespace

QString size(quint64 bytes) {
    const QLocale locale = userLocale("LC_NUMERIC");
    QString exact =
        bytes == 1 ? QStringLiteral("1 byte") : QStringLiteral("%1 bytes").arg(locale.toString(bytes));
    if (bytes < kibibyte) return exact;
    return QStringLiteral("%1 (%2)").arg(
        locale.formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeIecFormat), exact);
}

QStringList facts(const PreviewItem& item, const PreviewFacts& facts) {
    QStringList lines{QString::fromStdString(item.name)};
    const QString detail = QString::fromStdString(item.detail).trimmed();
    if (!facts.kind.isEmpty()) lines.append(kind(facts));
    if (!detail.isEmpty()) {
        lines.append(detail);
    } else if (facts.size) {
        lines.append(size(*facts.size));
    }
    if (facts.modified.isValid()) lines.append(userLocale("LC_TIME").toString(facts.modified, datePattern));
    return lines;
}

QString caption(const PreviewContent& content) {
    QStringList parts;
    if (!content.facts.kind.isEmpty()) parts.append(kind(content.facts));
    if (const auto* image = std::get_if<ImageBody>(&content.body)) {
        parts.append(
            QStringLiteral("%1 \u00D7 %2").arg(image->fullSize.width()).arg(image->fullSize.height()));
    }
    if (const auto* document = std::get_if<PagesBody>(&content.body)) {
        parts.append(document->pageCount == 1 ? QStringLiteral("1 page")
                                              : QStringLiteral("%1 pages").arg(document->pageCount));
    }
    if (content.facts.size) parts.append(size(*content.facts.size));
    return parts.join(separator);
}

}  // namespace vantrel::previewWords
