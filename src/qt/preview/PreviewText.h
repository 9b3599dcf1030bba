#pragma once

#include <QByteArray>
#include <optional>

#include "qt/preview/PreviewContent.h"

namespace vantrel {

/// How much of a text is shown.
inline constexpr qsizetype longestText = 200'000;  // bytes

enum class TextPart { whole, beginning };

/// The text in `bytes`, a whole file or its beginning: UTF-8 or, with a byte order mark, UTF-16. What is
/// malformed or cannot be shown becomes U+FFFD. Nothing when the bytes are not text. Any thread.
std::optional<TextBody> decodeText(const QByteArray& bytes, TextPart part);

}  // namespace vantrel
