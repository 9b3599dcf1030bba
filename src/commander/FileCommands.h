#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "commander/ChangeWatch.h"
#include "dialog/DialogType.h"
#include "panel/OvPanelView.h"
#include "platform/Desktop.h"

namespace vantrel {

/// The panels as a command finds them. Borrowed.
struct PanelPair {
    OvPanelView& active;
    OvPanelView& other;
};

/// A change of files that has been confirmed. Paths are raw bytes. It knows no panel and no dialog.
struct FileOperation {
    enum class Kind : std::uint8_t { copy, move, makeDirectory, trash };
    Kind kind;
    std::string item;         ///< what is copied, moved or thrown away
    std::string target = {};  ///< what comes into being
    /// The entry that the cursor goes to afterwards; without one it goes to its default row.
    std::optional<std::string> selection = {};
};

/// The cursor row unless it is "..", null when there is none.
std::shared_ptr<FileItem> selectedEntry(const OvPanelView& panel);

/// What the commander's commands do to files: which dialog a command opens, and what its answer entails. A
/// command without a row that it may act on does nothing: copying, moving and deleting pass over "..",
/// viewing and editing over folders as well. Main thread only; an operation has ended when `carryOut`
/// returns.
class FileCommands {
public:
    /// The engine is told of every change; it is borrowed.
    FileCommands(const Desktop& desktop, VantrelEngine& engine) : desktop_(desktop), engine_(engine) {}

    // What to show for a command, nothing where it has no row to act on.
    std::optional<DialogType> copyDialog(const PanelPair& panels) const;
    std::optional<DialogType> moveDialog(const OvPanelView& panel) const;
    std::optional<DialogType> deleteDialog(const OvPanelView& panel) const;
    std::optional<DialogType> viewerDialog(const OvPanelView& panel) const;
    DialogType mkdirDialog(const OvPanelView& panel) const;

    void edit(const OvPanelView& panel) const;
    void reveal(const OvPanelView& panel) const;
    void openTerminal(const OvPanelView& panel) const;

    /// Does what a dialog was confirmed for, and lets the panel concerned show what came of it.
    void carryOut(const DialogType& type, const std::optional<std::string>& input, const PanelPair& panels);

private:
    std::string viewedText(const FileItem& file) const;
    std::error_code perform(const FileOperation& operation) const;
    void didPerform(const FileOperation& operation, std::error_code error, const ContentsChange& change,
                    const PanelPair& panels) const;

    ChangeWatch watch(const FileOperation& operation) const;
    static ContentsChange changeBy(const FileOperation& operation, const ChangeWatch& changes);

    const Desktop desktop_;
    VantrelEngine& engine_;
};

}  // namespace vantrel
