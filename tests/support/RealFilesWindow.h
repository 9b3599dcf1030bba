#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "commander/OvCommanderView.h"
#include "posix/files/PosixFileManager.h"
#include "support/FakeDesktop.h"
#include "support/RecordingCanvas.h"
#include "support/TemporaryFolder.h"

namespace vantrel::test {

/// A commander 1100 x 720 points large on two real folders, "x" on the left and "y" on the right; all
/// else of its desktop are fakes. The folders lie in a temporary one below `place`.
struct RealFilesWindow {
    explicit RealFilesWindow(const std::string& place = std::filesystem::temp_directory_path())
        : folder(place) {
        desktop.process.currentDirectory = folder.makeFolder("x");
        desktop.process.home = folder.makeFolder("y");
    }

    /// In "x": a letter, and a folder with something in it.
    void makeALetterAndAFolder() const {
        folder.makeFile("x/a.txt", "the letter");
        folder.makeFolder("x/sub");
        folder.makeFile("x/sub/inner", "deep");
    }

    void open() {
        commander = OvCommanderView::make(desktop.portsWith(files), *desktop.engine, {0, 0, 1100, 720});
    }

    void press(Key key) const { commander->keyDown({.key = key}); }

    RecordingCanvas drawn() const {
        RecordingCanvas canvas;
        commander->drawTree(canvas);
        return canvas;
    }

    const TemporaryFolder folder;
    FakeDesktop desktop;
    PosixFileManager files;
    std::shared_ptr<OvCommanderView> commander;
};

}  // namespace vantrel::test
