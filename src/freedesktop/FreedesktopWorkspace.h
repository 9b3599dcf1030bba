#pragma once

#include "platform/Workspace.h"

namespace vantrel {

/// Other applications by the conventions of freedesktop.org desktops. Every request runs on a thread of its
/// own, which nothing waits for; what it starts becomes init's child and prints nothing to our output.
class FreedesktopWorkspace final : public Workspace {
public:
    /// By the desktop's default application, else by xdg-open.
    void openFile(const std::string& path) override;

    /// By the file manager on the session bus (org.freedesktop.FileManager1), else by xdg-open.
    void revealFolder(const std::string& path) override;

    /// By the first that is installed of $TERMINAL, xdg-terminal-exec, x-terminal-emulator, the terminals of
    /// the usual desktops, and xterm.
    void openTerminal(const std::string& path) override;
};

}  // namespace vantrel
