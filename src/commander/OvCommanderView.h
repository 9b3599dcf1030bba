#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commander/Bars.h"
#include "commander/CommanderAccessible.h"
#include "commander/CommanderGeometry.h"
#include "commander/FileCommands.h"
#include "commander/PressedKey.h"
#include "dialog/OvDialogDelegate.h"
#include "dialog/OvDialogOverlayView.h"
#include "panel/OvPanelView.h"
#include "panel/OvPanelViewDelegate.h"
#include "platform/Desktop.h"
#include "platform/Font.h"
#include "platform/PreviewPanel.h"
#include "platform/View.h"

namespace vantrel {

class VantrelEngine;

/// The view that fills the window: menu bar line, two panels side by side, prompt line, function-key bar.
/// Owns the panels and the open dialog, knows the active panel, and turns keys and clicks into commands. Main
/// thread only; file operations return when they are done.
class OvCommanderView final : public View,
                              public OvPanelViewDelegate,
                              public OvDialogDelegate,
                              public PreviewPanelDataSource,
                              public PreviewPanelDelegate {
public:
    static constexpr double topMenuBarHeight = commander::menuBarHeight;  ///< points, as are all heights
    static constexpr double promptBarHeight = commander::promptBarHeight;
    static constexpr double bottomFnBarHeight = commander::fnBarHeight;

    using FnButton = commander::FnButton;

    /// Both panels are loaded when this returns: the left one with the process's current folder, the right
    /// one with the home folder where that is readable. Ports and engine are borrowed.
    static std::shared_ptr<OvCommanderView> make(const Desktop& desktop, VantrelEngine& engine,
                                                 const Rect& frame);

    OvPanelView& leftPanel() const { return *leftPanel_; }
    OvPanelView& rightPanel() const { return *rightPanel_; }
    OvPanelView& activePanel() const;
    OvPanelView& otherPanel() const;
    const std::vector<FnButton>& fnButtons() const { return fnButtons_; }
    /// Reserved and always empty: the prompt line shows the active panel's folder, see `promptLine`.
    const std::string& promptText() const { return promptText_; }
    const Font& retroFont() const { return retroFont_; }  ///< not for the bars, which are bold throughout
    const Font& boldRetroFont() const { return boldRetroFont_; }

    // Commands, for keys, clicks and the menu. What they do to files is the business of `FileCommands`.
    void setActive(OvPanelView& panel);
    void toggleActivePanel();
    void toggleSizeDisplayMode();
    void editCurrentFile();
    void revealActiveFolder();
    void openTerminalInActiveFolder();
    void showQuickLook();
    void showFileViewer();
    void showCopyDialog();
    void showMoveDialog();
    void showMkdirDialog();
    void showDeleteDialog();
    void showSortDialog();
    void showHelpDialog();
    void quit();

    /// What the key of the cell at that place in `fnButtons` does.
    void runFnCommand(std::size_t index);

    /// The prompt line without its cursor: what it says and where.
    std::string promptLine() const;
    Rect promptBar() const;

    /// The open dialog, null when there is none. A new one replaces it, and the old one hears nothing of
    /// that. While one is open there is no preview: it would stand over the dialog and have the keyboard.
    const std::shared_ptr<OvDialogOverlayView>& dialogOverlay() const { return dialogOverlay_; }
    void presentDialog(DialogType type);

    void layoutPanels();

    // View.
    void draw(Canvas& canvas) override;
    Accessible* accessible() override { return &accessible_; }
    bool acceptsFirstResponder() const override { return true; }
    EventResult keyDown(const KeyEvent& event) override;
    EventResult mouseDown(const MouseEvent& event) override;

    // OvPanelViewDelegate.
    void panelDidSelect(OvPanelView& panel) override;
    void panelDidActivateItem(OvPanelView& panel, const FileItem& item) override;
    void panelPathDidChange(OvPanelView& panel, const std::string& newPath) override;

    // OvDialogDelegate.
    void dialogDidConfirm(const DialogType& type, std::optional<std::string> inputValue) override;
    void dialogDidCancel() override;

    // PreviewPanelDataSource and PreviewPanelDelegate.
    int numberOfPreviewItems() const override;
    std::optional<PreviewItem> previewItemAt(int index) const override;
    EventResult previewPanelHandleKey(const KeyEvent& event) override { return keyDown(event); }

protected:
    void frameDidChange() override { layoutPanels(); }

private:
    OvCommanderView(const Desktop& desktop, VantrelEngine& engine, const Rect& frame);
    void setup();

    EventResult quickSearch(const KeyEvent& event);
    EventResult closePreview(const KeyEvent& event);

    PanelPair panels() const { return {activePanel(), otherPanel()}; }
    void presentIfAny(std::optional<DialogType> type);
    void dismissDialog();

    const Desktop desktop_;
    FileCommands files_;
    const std::shared_ptr<OvPanelView> leftPanel_;
    const std::shared_ptr<OvPanelView> rightPanel_;
    OvPanelView* activePanel_ = nullptr;
    std::shared_ptr<OvDialogOverlayView> dialogOverlay_;
    const std::string promptText_;
    const Font retroFont_;
    const Font boldRetroFont_;
    std::vector<FnButton> fnButtons_ = commander::fnButtons();
    PressedKey pressedKey_;
    CommanderAccessible accessible_{*this};
};

}  // namespace vantrel
