#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commander/OvCommanderView.h"
#include "platform/Application.h"
#include "platform/Desktop.h"

namespace vantrel {

class VantrelEngine;

/// The program as an object: reads the command line, makes the one window and the commander in it, and ends
/// the program when the window closes. Lives as long as the process. Main thread only.
class AppDelegate {
public:
    /// `arguments` as the process got them, the program's name first; raw bytes. Everything is borrowed.
    AppDelegate(const Desktop& desktop, VantrelEngine& engine, const std::vector<std::string>& arguments);

    /// Makes the window, opens the panels on the start folders and shows it all.
    void applicationDidFinishLaunching();

    /// Ends the program; the window may close.
    bool windowShouldClose();

    // What the items of the main menu do; each does what the matching key does.
    void showAbout();
    void terminate();
    void triggerQuickLook();
    void triggerViewFile();
    void triggerEditFile();
    void triggerCopy();
    void triggerMove();
    void triggerMkdir();
    void triggerDelete();
    void revealInFinder();
    void openInTerminal();
    void toggleSizeMode();
    void toggleHiddenFiles();
    void refreshPanels();
    void switchPanel();
    void sortByName();
    void sortBySize();
    void sortByDate();
    void sortByExt();
    void showHelp();

    const std::optional<std::string>& initialLeftPath() const { return initialLeftPath_; }
    const std::optional<std::string>& initialRightPath() const { return initialRightPath_; }
    OvCommanderView& commanderView() const;

private:
    void openStartFolder(OvPanelView& panel, const std::optional<std::string>& path);

    const Desktop desktop_;
    VantrelEngine& engine_;
    std::optional<std::string> initialLeftPath_;
    std::optional<std::string> initialRightPath_;
    std::shared_ptr<OvCommanderView> commanderView_;
    std::unique_ptr<Window> window_;
};

}  // namespace vantrel
