#pragma once

#include <string>

namespace vantrel {

/// Port: the other applications of this desktop. Paths are raw bytes. Nothing waits for the application that
/// is started, and failures are silent. Main thread only.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens a file with its default application.
    virtual void openFile(const std::string& path) = 0;

    /// Shows a folder in the desktop's file browser.
    virtual void revealFolder(const std::string& path) = 0;

    /// Opens a terminal whose working directory is the folder.
    virtual void openTerminal(const std::string& path) = 0;
};

}  // namespace vantrel
