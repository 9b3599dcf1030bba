#include "qt/QtFileNameText.h"

#include <QList>
#include <QStringView>
#include <optional>

namespace vantrel {

namespace {

constexpr char16_t firstRawByte = 0xDC80;
constexpr char16_t lastRawByte = 0xDCFF;
constexpr char16_t rawByteBase = 0xDC00;

bool isRawByte(QChar c) {
    return c.unicode() >= firstRawByte && c.unicode() <= lastRawByte;
}

/// Nothing where the text would not give the same bytes back. (Qt drops a byte order mark.)
std::optional<QString> asUtf8(std::string_view bytes) {
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QString text = QString::fromUtf8(view);
    if (text.toUtf8() != view) return std::nullopt;
    return text;
}

/// Moves the first character of `name` into `text`, or its first byte where it does not begin with one.
void moveFirst(std::string_view& name, QString& text) {
    constexpr std::size_t longestCharacter = 4;
    for (std::size_t length = 1; length <= longestCharacter && length <= name.size(); ++length) {
        if (const auto character = asUtf8(name.substr(0, length))) {
            text += *character;
            name.remove_prefix(length);
            return;
        }
    }
    text += QChar(static_cast<char16_t>(rawByteBase + static_cast<unsigned char>(name.front())));
    name.remove_prefix(1);
}

}  // namespace

QString textOf(std::string_view name) {
    if (auto whole = asUtf8(name)) return *std::move(whole);
    QString text;
    while (!name.empty()) moveFirst(name, text);
    return text;
}

std::string bytesOf(const QString& text) {
    std::string bytes;
    qsizetype begin = 0;
    const auto append = [&](qsizetype end) {
        // By way of UCS-4, where Qt turns a lone surrogate into U+FFFD; in UTF-8 it would become a question
        // mark.
        const QList<uint> characters = QStringView(text).sliced(begin, end - begin).toUcs4();
        bytes +=
            QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()), characters.size())
                .toStdString();
    };
    for (qsizetype at = 0; at < text.size(); ++at) {
        const bool endsAPair = at > begin && text[at - 1].isHighSurrogate();
        if (!isRawByte(text[at]) || endsAPair) continue;
        append(at);
        bytes += static_cast<char>(text[at].unicode() - rawByteBase);
        begin = at + 1;
    }
    append(text.size());
    return bytes;
}

}  // namespace vantrel
