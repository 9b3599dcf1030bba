#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vantrel {

/// One line of a menu, UTF-8. A separator has no title. `action` is called on the main thread.
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
