#include "app/MainMenu.h"

#include <string>
#include <utility>

#include "app/AppDelegate.h"

namespace vantrel {

std::vector<Menu> makeMainMenu(AppDelegate& delegate) {
    const auto item = [&delegate](std::string title, void (AppDelegate::*action)(),
                                  std::string keyEquivalent = {}) {
        return MenuItem{std::move(title), [&delegate, action] { (delegate.*action)(); },
                        std::move(keyEquivalent)};
    };
    using App = AppDelegate;
    return {
        {"Vantrel",
         {item("About Vantrel", &App::showAbout), MenuItem::separator(),
          item("Quit Vantrel", &App::terminate, "q")}},
        {"File",
         {item("QuickLook Preview", &App::triggerQuickLook, " "),
          item("View File (Retro)", &App::triggerViewFile), item("Edit File", &App::triggerEditFile),
          MenuItem::separator(), item("Copy to Other Panel", &App::triggerCopy),
          item("Move / Rename", &App::triggerMove), item("Make Directory...", &App::triggerMkdir),
          item("Delete to Trash", &App::triggerDelete), MenuItem::separator(),
          item("Reveal in Finder", &App::revealInFinder, "o"),
          item("Open in Terminal", &App::openInTerminal, "t")}},
        {"View",
         {item("Toggle Size Mode (Human-Readable / Bytes)", &App::toggleSizeMode),
          item("Toggle Hidden Files", &App::toggleHiddenFiles, "."),
          item("Refresh Panels", &App::refreshPanels, "r")}},
        {"Commands",
         {item("Switch Panel (Tab)", &App::switchPanel, "\t"), MenuItem::separator(),
          item("Sort by Name", &App::sortByName, "1"),
          item("Sort by Size (Largest first)", &App::sortBySize, "2"),
          item("Sort by Date", &App::sortByDate, "3"), item("Sort by Extension", &App::sortByExt, "4")}},
        {"Help", {item("Orvane Keyboard Reference", &App::showHelp)}},
    };
}

}  // namespace vantrel
