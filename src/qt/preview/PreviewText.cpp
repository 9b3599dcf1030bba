#include "qt/preview/PreviewText.h"

#include <QStringDecoder>
#include <algorithm>

namespace vantrel {

namespace {

constexpr qsizetype longestLine = 1000;  // UTF-16 units; a longer one takes the widget too long to lay out

bool isControl(QChar character) {
    return character.category() == QChar::Other_Control;
}

/// Control characters that are common in text files: terminal colours and page breaks.
bool isUsualControl(QChar character) {
    return character == u'\t' || character == u'\n' || character == u'\r' || character == u'\f' ||
           character == u'\x1b';
}

bool isStrange(QChar character) {
    return character == QChar::ReplacementCharacter || (isControl(character) && !isUsualControl(character));
}

std::optional<QString> decoded(const QByteArray& bytes, TextPart part) {
    const auto marked = QStringConverter::encodingForData(bytes);
    const bool isUtf16 = marked == QStringConverter::Utf16LE || marked == QStringConverter::Utf16BE;
    if (!isUtf16 && bytes.contains('\0')) return std::nullopt;
    // A stateful decoder withholds a sequence that is cut off at the end.
    const auto flags =
        part == TextPart::whole ? QStringDecoder::Flag::Stateless : QStringDecoder::Flag::Default;
    QStringDecoder decoder(isUtf16 ? QStringConverter::Utf16 : QStringConverter::Utf8, flags);
    return QString(decoder(bytes));
}

bool looksLikeText(const QString& text) {
    const auto strange = std::ranges::count_if(text, &isStrange);
    return strange * 10 <= text.size();
}

QString harmless(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (QChar& character : text) {
        if (character == u'\r' || character == u'\f') character = u'\n';
        if (isControl(character) && character != u'\n' && character != u'\t')
            character = QChar::ReplacementCharacter;
    }
    return text;
}

QString withLinesBroken(const QString& text) {
    QString result;
    result.reserve(text.size() + text.size() / longestLine);
    qsizetype column = 0;
    for (const QChar character : text) {
        // Both halves of a surrogate pair stay together.
        if (column >= longestLine && character != u'\n' && !character.isLowSurrogate()) {
            result += u'\n';
            column = 0;
        }
        result += character;
        column = character == u'\n' ? 0 : column + 1;
    }
    return result;
}

}  // namespace

std::optional<TextBody> decodeText(const QByteArray& bytes, TextPart part) {
    const std::optional<QString> text = decoded(bytes, part);
    if (!text || text->isEmpty() || !looksLikeText(*text)) return std::nullopt;
    QString shown = withLinesBroken(harmless(*text));
    if (part == TextPart::beginning) shown += u'\u2026';
    return TextBody{.text = shown};
}

}  // namespace vantrel
