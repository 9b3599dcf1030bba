#include "support/HostileNames.h"

#include <random>
#include <set>

namespace vantrel::test {

namespace {

std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    for (; times > 0; --times) all += text;
    return all;
}

std::vector<std::string> fixedNames() {
    return {
        "-rf",
        "--",
        "...",
        " ",
        "\t",
        "new\nline",
        "\r\n",
        "\x7F",
        "\x1B[2J\x1B[31mred",
        "\x1B]0;title\x07",
        "\u009B31m",  // CSI as a C1 control
        "\xC2\x85",   // next line
        "\xE2\x80\xA8line\xE2\x80\xA9paragraph",
        "\u202Egnp.exe",  // right-to-left override
        "\xE2\x80\xAA\xE2\x80\xAB\xE2\x80\xAD\xE2\x80\xAC",
        "\xE2\x81\xA6\xE2\x81\xA7\xE2\x81\xA8\xE2\x81\xA9",
        "\u061Carabic letter mark",
        "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D.txt",  // Hebrew
        "\xED\xA0\x80\xED\xB0\x80",              // a surrogate pair in the manner of CESU-8
        "\xED\xA0\x80",
        "\xC0\xAF..\xC0\xAF",  // an overlong slash
        "\xC0\x80",            // an overlong zero byte
        "\xF8\x88\x80\x80\x80",
        "\xF4\x90\x80\x80",  // behind the last code point
        "\xEF\xBF\xBE\xEF\xBF\xBF",
        "\xEF\xBB\xBFmark",
        "\xE2\x82",  // cut off
        "\x80\xBF",
        "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB",
        "e" + repeated("\xCC\x81", 127),
        repeated("\xE2\x80\x8D", 85),
        repeated("9", 255),
        repeated("0", 254) + "1",
        "1" + repeated(".1", 127),
        "." + repeated("x", 254),
        "$(reboot)",
        "`reboot`",
        "%20%00%2F",
        "'\"\\",
        "con.",
        "name.trashinfo",
        ".vantrel-0",
    };
}

std::string randomName(std::minstd_rand& random) {
    std::string name;
    const std::size_t length = 1 + random() % 255;
    while (name.size() < length) {
        const char byte = static_cast<char>(random() >> 8);
        if (byte != '\0' && byte != '/') name += byte;
    }
    return name;
}

/// Removes UTF-8's first character and answers it; 0 when it is broken.
char32_t takeCharacter(std::string_view& text) {
    const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    std::size_t length = 1;
    char32_t character = byte(0);
    if (character >= 0xF0) {
        length = 4;
        character &= 0x07;
    } else if (character >= 0xE0) {
        length = 3;
        character &= 0x0F;
    } else if (character >= 0xC0) {
        length = 2;
        character &= 0x1F;
    } else if (character >= 0x80) {
        return 0;
    }
    if (text.size() < length) return 0;
    for (std::size_t index = 1; index < length; ++index) {
        if ((byte(index) & 0xC0) != 0x80) return 0;
        character = (character << 6) | (byte(index) & 0x3F);
    }
    text.remove_prefix(length);
    static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    return character < smallest[length] || character > 0x10FFFF || isSurrogate ? 0 : character;
}

bool isDirection(char32_t character) {
    return character == 0x061C || character == 0x200E || character == 0x200F ||
           (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

}  // namespace

std::vector<std::string> hostileNames(std::size_t count) {
    std::set<std::string> names;
    for (const std::string& name : fixedNames()) names.insert(name);
    for (std::size_t length = 1; length <= 255; ++length) {
        for (const std::string_view unit : {"n", "\xC3\xA9", "\xF0\x9F\x93\x81", "\xFF"})
            if (length * unit.size() <= 255) names.insert(repeated(unit, length));
    }
    std::minstd_rand random(20261121);
    while (names.size() < count) {
        const std::string name = randomName(random);
        if (name != "." && name != "..") names.insert(name);
    }
    return {names.begin(), names.end()};
}

std::string harmIn(std::string_view text) {
    constexpr char32_t firstStrongIsolate = 0x2068;
    constexpr char32_t popIsolate = 0x2069;
    int open = 0;
    while (!text.empty()) {
        const char32_t character = takeCharacter(text);
        if (character == 0) return "broken UTF-8 or a zero byte";
        if (character < 0x20 || (character >= 0x7F && character < 0xA0)) return "a control character";
        if (character == 0x2028 || character == 0x2029) return "a separator";
        if (character == firstStrongIsolate) {
            ++open;
        } else if (character == popIsolate && open > 0) {
            --open;
        } else if (isDirection(character)) {
            return "a control of the writing direction";
        }
    }
    return open == 0 ? "" : "an isolate without its end";
}

std::string percentDecoded(std::string_view text) {
    std::string bytes;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '%' && index + 2 < text.size()) {
            bytes += static_cast<char>(std::stoi(std::string(text.substr(index + 1, 2)), nullptr, 16));
            index += 2;
        } else {
            bytes += text[index];
        }
    }
    return bytes;
}

}  // namespace vantrel::test
