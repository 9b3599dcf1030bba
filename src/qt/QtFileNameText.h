#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace vantrel {

/// File names as editable text and back: `bytesOf(textOf(name)) == name` for any bytes. What is not UTF-8
/// becomes one lone surrogate U+DC80 to U+DCFF for each byte 0x80 to 0xFF, which no other text contains and
/// which editors preserve (as in Python's PEP 383). Other lone surrogates, which no file name gives rise to,
/// become U+FFFD. Any thread.
QString textOf(std::string_view name);
std::string bytesOf(const QString& text);

}  // namespace vantrel
