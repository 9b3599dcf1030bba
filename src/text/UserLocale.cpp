#include "text/UserLocale.h"

#include <cstdlib>
#include <cstring>

namespace vantrel::text {

namespace {

bool isKnownLanguage(const char* language) {
    int32_t count = 0;
    const icu::Locale* const available = icu::Locale::getAvailableLocales(count);
    for (int32_t index = 0; index < count; ++index) {
        if (std::strcmp(available[index].getLanguage(), language) == 0) return true;
    }
    return false;
}

/// The script that a glibc modifier stands for, as in "sr_RS@latin".
const char* scriptOf(std::string_view modifier) {
    if (modifier == "latin") return "Latn";
    if (modifier == "cyrillic") return "Cyrl";
    return "";
}

}  // namespace

std::string_view userLocaleName(const char* category) {
    for (const char* const variable : {"LC_ALL", category, "LANG"}) {
        const char* const value = std::getenv(variable);
        if (value != nullptr && *value != '\0') return value;
    }
    return "C";
}

icu::Locale localeNamed(std::string_view posixName) {
    std::string_view modifier;
    if (const auto at = posixName.find('@'); at != std::string_view::npos) {
        modifier = posixName.substr(at + 1);
        posixName = posixName.substr(0, at);
    }
    posixName = posixName.substr(0, posixName.find('.'));

    const icu::Locale parsed = icu::Locale::createCanonical(std::string(posixName).c_str());
    const std::string language = parsed.getLanguage();
    // A variant is dropped on the way: that of en_US_POSIX would switch grouping and sorting off.
    if (parsed.isBogus() || language.empty() || !isKnownLanguage(language.c_str()))
        return icu::Locale("en", "US");

    std::string script = parsed.getScript();
    if (script.empty()) script = scriptOf(modifier);
    const std::string name = script.empty() ? language : language + '_' + script;
    return icu::Locale(name.c_str(), parsed.getCountry());
}

}  // namespace vantrel::text
