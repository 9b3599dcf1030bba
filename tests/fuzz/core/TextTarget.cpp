#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "dialog/ViewerLines.h"
#include "fuzz/Input.h"
#include "fuzz/Utf8.h"
#include "fuzz/core/Targets.h"
#include "sizes/TerminalText.h"
#include "text/Text.h"

namespace vantrel::fuzz {

namespace {

constexpr std::u32string_view bidirectionalControls =
    U"\u061C\u200E\u200F\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069";

bool turnsText(char32_t character) {
    return bidirectionalControls.find(character) != std::u32string_view::npos;
}

void checkRepair(const std::string& bytes) {
    const std::string repaired = text::repairedUtf8(bytes);
    require(isUtf8(repaired), "repaired text is UTF-8");
    require(decodedUtf8(repaired) == decodedUtf8(bytes), "each broken sequence becomes one replacement");
    require(!isUtf8(bytes) || repaired == bytes, "what is whole is not touched");
}

void checkShown(const std::string& bytes) {
    const std::string shown = text::shownText(bytes);
    require(isDrawable(shown), "shown text can be drawn");
    std::u32string characters = decodedUtf8(shown);
    if (characters.starts_with(U'\u2068') && characters.ends_with(U'\u2069') && characters.size() > 2) {
        characters = characters.substr(1, characters.size() - 2);
    }
    require(std::ranges::none_of(characters, turnsText), "shown text turns nothing beside it");
    require(characters.size() == decodedUtf8(bytes).size(), "no character is lost or added");
    const std::string forTerminal = sizes::terminalText(bytes);
    require(isDrawable(forTerminal) && std::ranges::none_of(decodedUtf8(forTerminal), turnsText),
            "a terminal gets nothing that steers it");
}

void checkCharacters(const std::string& bytes, std::size_t count) {
    const std::string repaired = text::repairedUtf8(bytes);
    const std::size_t total = text::characterCount(bytes);
    const std::string last = text::lastCharacters(bytes, count);
    require(total <= decodedUtf8(bytes).size(), "a character has at least one code point");
    require((total == 0) == bytes.empty(), "only the empty text has no characters");
    require(repaired.ends_with(last), "the last characters end the text");
    require(text::characterCount(last) == std::min(count, total), "there are as many as asked for");
    const std::string first = text::firstCharacter(bytes);
    require(repaired.starts_with(first), "the first character begins the text");
    require(text::characterCount(first) == std::min<std::size_t>(total, 1), "it is one");
    require(text::hasPrefixIgnoringCase(bytes, ""), "every text begins with nothing");
    require(text::hasPrefixIgnoringCase(bytes, bytes), "every text begins with itself");
    require(text::hasPrefixIgnoringCase(bytes, first), "every text begins with its first character");
    require(text::beginsWithLetterOrNumber(bytes) == text::beginsWithLetterOrNumber(first),
            "the first character decides what a text begins with");
}

void checkCase(const std::string& bytes) {
    const std::string lowered = text::lowerCased(bytes);
    require(isUtf8(lowered), "lower case is UTF-8");
    require(text::lowerCased(lowered) == lowered, "lower case stays");
}

void checkViewerLines(const std::string& bytes, std::size_t lineLimit, std::size_t byteLimit) {
    const std::string content = text::repairedUtf8(bytes);
    const auto lines = viewerLines(content, lineLimit, byteLimit);
    const auto available = static_cast<std::size_t>(std::ranges::count(content, '\n')) + 1;
    require(lines.size() == std::min(lineLimit, available), "every line is shown, up to the limit");
    for (const std::string& line : lines) {
        require(isDrawable(line), "a line can be drawn");
        // A tab takes eight bytes at most, a control character of one byte three, the isolates six in all.
        require(line.size() <= byteLimit * 8 + 6, "a line is cut at its limit");
    }
}

}  // namespace

void tryText(std::span<const std::uint8_t> bytes) {
    Input input(bytes);
    const std::size_t lineLimit = input.below(90);
    const std::size_t byteLimit = input.below(300);
    const std::size_t count = input.below(50);
    const std::string text = input.flag() ? input.rest() : input.text(60);
    checkRepair(text);
    checkShown(text);
    checkCharacters(text, count);
    checkCase(text);
    checkViewerLines(text, lineLimit, byteLimit);
}

}  // namespace vantrel::fuzz
