#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vantrel {

/// One line of a menu. A separator has no title.
struct MenuItem {
    std::string title;
    std::function<void()> action;
    /// The character that runs the item with the Command key (Control on Linux) held: "o", ".", " " or a tab
    /// character; empty for none.
    std::string keyEquivalent;

    static MenuItem separator() { return {}; }
    bool isSeparator() const { return title.empty(); }
};

struct Menu {
    std::string title;
    std::vector<MenuItem> items;
};

}  // namespace vantrel
