#include "commander/Bars.h"

#include "text/Text.h"

namespace vantrel::commander {

std::vector<FnButton> fnButtons() {
    static constexpr std::array labels{"Help",   "Bytes/HR", "View",   "Edit", "Copy",
                                       "RenMov", "Mkdir",    "Delete", "Sort", "Quit"};
    std::vector<FnButton> buttons;
    buttons.reserve(labels.size());
    for (const char* const label : labels) buttons.push_back({std::to_string(buttons.size() + 1), label, {}});
    return buttons;
}

// "Mac" belongs to the look of the prompt and is no machine's name: it is the same everywhere. The home
// folder is matched as plain text, so that beside "/home/ann" the folder "/home/anna" reads "~a": the line is
// only looked at, and no path is ever taken from it.
std::string promptLine(const std::string& user, const std::string& home, const std::string& folder) {
    const bool isAtHome = folder.starts_with(home);
    return text::shownText(user) +
           "@Mac:" + text::shownText(isAtHome ? "~" + folder.substr(home.size()) : folder) + "$ ";
}

}  // namespace vantrel::commander
