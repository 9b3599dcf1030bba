#include "app/AppDelegate.h"

#include "app/MainMenu.h"
#include "base/Paths.h"
#include "base/Precondition.h"
#include "platform/FileManager.h"
#include "platform/ProcessInfo.h"
#include "theme/OvPalette.h"

namespace vantrel {

namespace {

constexpr Size contentSize{1100, 720};        // points
constexpr Size minimumContentSize{800, 500};  // points
constexpr const char* windowTitle = "Vantrel - Orvane";

constexpr const char* aboutTitle = "Vantrel Commander";
constexpr const char* aboutText =
    "Legendary Orvane style dual-pane file manager for macOS with automatic recursive folder size "
    "calculation.\n\n"
    "Written in C++20 with Qt and ICU by the Vantrel developers.";

// "~" and "~ann" at the start of a path become home folders; a user who does not exist leaves it as it is.
std::string expandingTilde(const std::string& path, const ProcessInfo& process) {
    if (!path.starts_with('~')) return path;
    const std::size_t slash = path.find('/');
    const std::string user = path.substr(1, slash == std::string::npos ? slash : slash - 1);
    const std::optional<std::string> home =
        user.empty() ? process.homeDirectory() : process.homeDirectoryOf(user);
    if (!home) return path;
    return slash == std::string::npos ? *home : paths::appending(*home, path.substr(slash + 1));
}

std::optional<std::string> startPath(const std::vector<std::string>& arguments, std::size_t index,
                                     const ProcessInfo& process) {
    if (index >= arguments.size()) return std::nullopt;
    return expandingTilde(arguments[index], process);
}

void flipHiddenFiles(OvPanelView& panel) {
    panel.setShowHiddenFiles(!panel.showHiddenFiles());
}

}  // namespace

AppDelegate::AppDelegate(const Desktop& desktop, VantrelEngine& engine,
                         const std::vector<std::string>& arguments)
    : desktop_(desktop),
      engine_(engine),
      initialLeftPath_(startPath(arguments, 1, desktop.process)),
      initialRightPath_(startPath(arguments, 2, desktop.process)) {}

void AppDelegate::applicationDidFinishLaunching() {
    window_ = desktop_.application.makeWindow({.title = windowTitle,
                                               .contentSize = contentSize,
                                               .minimumContentSize = minimumContentSize,
                                               .background = OvPalette::dosBlue});
    window_->setShouldClose([this] { return windowShouldClose(); });
    commanderView_ = OvCommanderView::make(desktop_, engine_, {0, 0, contentSize.width, contentSize.height});
    openStartFolder(commanderView_->leftPanel(), initialLeftPath_);
    openStartFolder(commanderView_->rightPanel(), initialRightPath_);
    window_->setContentView(commanderView_);
    desktop_.application.setMainMenu(makeMainMenu(*this));
    window_->centerAndShow();
}

void AppDelegate::openStartFolder(OvPanelView& panel, const std::optional<std::string>& path) {
    if (!path) return;
    const std::string absolute = desktop_.process.absolutePath(*path);
    if (absolute.empty() || desktop_.files.targetOf(absolute) == PathTarget::missing) return;
    panel.setCurrentPath(absolute);
}

bool AppDelegate::windowShouldClose() {
    terminate();
    return true;
}

OvCommanderView& AppDelegate::commanderView() const {
    precondition(commanderView_ != nullptr, "the commander is asked for before the launch");
    return *commanderView_;
}

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
