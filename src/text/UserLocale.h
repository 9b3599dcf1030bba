#pragma once

#include <string>
#include <string_view>

#include <unicode/locid.h>

namespace vantrel::text {

/// The name of the user's locale for one category such as "LC_TIME", as the environment spells it: the first
/// of LC_ALL, the category and LANG that is set and not empty (POSIX.1-2017, chapter 8.2); "C" when none is.
/// `setlocale` plays no part. Must not run while another thread changes the environment. The view points into
/// the environment: use it at once.
std::string_view userLocaleName(const char* category);

/// ICU's locale for a POSIX name: "de_DE.UTF-8@euro" is de_DE. "C", "POSIX" and languages that ICU does not
/// know become en_US.
icu::Locale localeNamed(std::string_view posixName);

}  // namespace vantrel::text
