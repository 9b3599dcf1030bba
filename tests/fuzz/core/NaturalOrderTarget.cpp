#include <algorithm>
#include <array>
#include <string>

#include "fuzz/Input.h"
#include "fuzz/core/Targets.h"
#include "support/ScopedEnvironment.h"
#include "text/Text.h"

namespace vantrel::fuzz {

namespace {

constexpr std::array locales{"en_US.UTF-8", "de_DE.UTF-8", "sv_SE.UTF-8", "ja_JP.UTF-8", "C", "tr_TR.UTF-8"};

void checkKey(const std::string& name) {
    const std::string key = text::naturalSortKey(name);
    require(text::naturalSortKey(name) == key, "a name has one key");
    require(key.size() > name.size() && key.ends_with(name), "a key ends with its name");
    require(key.find('\0') == key.size() - name.size() - 1, "the language's key ends where the name begins");
}

int compared(const std::string& a, const std::string& b) {
    const int order = text::naturalSortKey(a).compare(text::naturalSortKey(b));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

void checkOrder(const std::array<std::string, 3>& names) {
    const auto& [a, b, c] = names;
    require(compared(a, b) == -compared(b, a), "the order does not depend on who is asked");
    require((compared(a, b) == 0) == (a == b), "only the same name is equal");
    if (compared(a, b) <= 0 && compared(b, c) <= 0) require(compared(a, c) <= 0, "the order has no circles");
}

std::string letters(Input& input) {
    static constexpr std::string_view alphabet = "abcxyzABCXYZ";
    std::string word;
    for (std::size_t count = input.below(6); count > 0; --count) word += input.oneOf(alphabet);
    return word;
}

void checkDigits(Input& input) {
    const std::string before = letters(input);
    const std::string after = letters(input);
    const std::uint64_t first = input.number() >> input.below(64);
    const std::uint64_t second = input.number() >> input.below(64);
    if (first == second) return;
    // Short, and around the length at which a language's rules take digits apart.
    const std::string further(input.flag() ? 0 : 230 + input.below(30), input.flag() ? '9' : '0');
    const auto numbered = [&](std::uint64_t number) {
        const std::string digits = number == 0 ? "0" : std::to_string(number) + further;
        return before + std::string(input.below(4), '0') + digits + after;
    };
    const std::string smaller = numbered(std::min(first, second));
    require(compared(smaller, numbered(std::max(first, second))) < 0, "numbers are ordered by value");
}

void checkCase(Input& input) {
    const std::string a = letters(input);
    const std::string b = letters(input);
    const int order = text::lowerCased(a).compare(text::lowerCased(b));
    if (order == 0) return;
    require((compared(a, b) < 0) == (order < 0), "letters are ordered without regard to case");
}

}  // namespace

void tryNaturalOrder(std::span<const std::uint8_t> bytes) {
    Input input(bytes);
    const test::ScopedLocale locale(input.oneOf(locales));
    checkDigits(input);
    checkCase(input);
    const std::string shared = input.text(4);
    std::array<std::string, 3> names;
    for (std::string& name : names) {
        name = shared + input.name(6);
        std::erase(name, '\0');
        checkKey(name);
    }
    checkOrder(names);
}

}  // namespace vantrel::fuzz
