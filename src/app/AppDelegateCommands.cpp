#include "app/AppDelegate.h"

namespace vantrel {

namespace {

constexpr const char* aboutTitle = "Vantrel Commander";
constexpr const char* aboutText =
    "Legendary Orvane style dual-pane file manager for macOS with automatic recursive folder size "
    "calculation.\n\n"
    "Written in C++20 with Qt and ICU by the Vantrel developers.";

void flipHiddenFiles(OvPanelView& panel) {
    panel.setShowHiddenFiles(!panel.showHiddenFiles());
}

}  // namespace

void AppDelegate::showAbout() {
    desktop_.application.runModal({.messageText = aboutTitle, .informativeText = aboutText, .button = "OK"});
}

void AppDelegate::terminate() {
    desktop_.application.terminate();
}

void AppDelegate::triggerQuickLook() {
    commanderView().showQuickLook();
}
void AppDelegate::triggerViewFile() {
    commanderView().showFileViewer();
}
void AppDelegate::triggerEditFile() {
    commanderView().editCurrentFile();
}
void AppDelegate::triggerCopy() {
    commanderView().showCopyDialog();
}
void AppDelegate::triggerMove() {
    commanderView().showMoveDialog();
}
void AppDelegate::triggerMkdir() {
    commanderView().showMkdirDialog();
}
void AppDelegate::triggerDelete() {
    commanderView().showDeleteDialog();
}
void AppDelegate::showHelp() {
    commanderView().showHelpDialog();
}
void AppDelegate::toggleSizeMode() {
    commanderView().toggleSizeDisplayMode();
}
void AppDelegate::switchPanel() {
    commanderView().toggleActivePanel();
}
void AppDelegate::revealInFinder() {
    commanderView().revealActiveFolder();
}
void AppDelegate::openInTerminal() {
    commanderView().openTerminalInActiveFolder();
}

// The direction stays as it is: a title's "Largest first" is only the usual one.
void AppDelegate::sortByName() {
    commanderView().activePanel().setSortField(SortField::name);
}
void AppDelegate::sortBySize() {
    commanderView().activePanel().setSortField(SortField::size);
}
void AppDelegate::sortByDate() {
    commanderView().activePanel().setSortField(SortField::date);
}
void AppDelegate::sortByExt() {
    commanderView().activePanel().setSortField(SortField::ext);
}

// Each panel flips its own value, so two that differ go on differing.
void AppDelegate::toggleHiddenFiles() {
    flipHiddenFiles(commanderView().leftPanel());
    flipHiddenFiles(commanderView().rightPanel());
}

void AppDelegate::refreshPanels() {
    commanderView().leftPanel().loadDirectory();
    commanderView().rightPanel().loadDirectory();
}

}  // namespace vantrel
