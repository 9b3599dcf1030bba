#include "commander/OvCommanderView.h"

#include <algorithm>
#include <utility>

#include "base/Precondition.h"
#include "commander/BarsPainter.h"
#include "commander/KeyBindings.h"
#include "platform/Application.h"
#include "platform/FileManager.h"
#include "platform/PreviewPanel.h"
#include "platform/ProcessInfo.h"
#include "platform/Workspace.h"
#include "text/Text.h"
#include "theme/OvPalette.h"

namespace vantrel {

namespace {

constexpr double fontSize = 13;  // points

}  // namespace

OvCommanderView::OvCommanderView(const Desktop& desktop, VantrelEngine& engine, const Rect& frame)
    : View(frame),
      desktop_(desktop),
      files_(desktop, engine),
      leftPanel_(OvPanelView::make(desktop, engine)),
      rightPanel_(OvPanelView::make(desktop, engine)),
      retroFont_(OvPalette::retroFont(desktop.fonts, fontSize, FontWeight::regular)),
      boldRetroFont_(OvPalette::retroFont(desktop.fonts, fontSize, FontWeight::bold)) {}

std::shared_ptr<OvCommanderView> OvCommanderView::make(const Desktop& desktop, VantrelEngine& engine,
                                                       const Rect& frame) {
    std::shared_ptr<OvCommanderView> commander(new OvCommanderView(desktop, engine, frame));
    commander->setup();
    return commander;
}

void OvCommanderView::setup() {
    const auto self = std::static_pointer_cast<OvCommanderView>(shared_from_this());
    leftPanel_->delegate = self;
    rightPanel_->delegate = self;
    leftPanel_->accessibleTitle = "Left panel";
    rightPanel_->accessibleTitle = "Right panel";
    addSubview(leftPanel_);
    addSubview(rightPanel_);
    setActive(*leftPanel_);

    const std::string currentDirectory = desktop_.process.currentDirectoryPath();
    const std::string home = desktop_.process.homeDirectory();
    leftPanel_->setCurrentPath(currentDirectory);
    rightPanel_->setCurrentPath(desktop_.files.isReadable(home) ? home : currentDirectory);
    layoutPanels();
}

OvPanelView& OvCommanderView::activePanel() const {
    precondition(activePanel_ != nullptr, "the commander has no active panel");
    return *activePanel_;
}

OvPanelView& OvCommanderView::otherPanel() const {
    return activePanel_ == leftPanel_.get() ? *rightPanel_ : *leftPanel_;
}

void OvCommanderView::setActive(OvPanelView& panel) {
    activePanel_ = &panel;
    leftPanel_->setIsActivePanel(activePanel_ == leftPanel_.get());
    rightPanel_->setIsActivePanel(activePanel_ == rightPanel_.get());
    setNeedsDisplay();
}

void OvCommanderView::toggleActivePanel() {
    setActive(otherPanel());
}

// Each panel by itself, so two that differ go on differing.
void OvCommanderView::toggleSizeDisplayMode() {
    for (OvPanelView* panel : {leftPanel_.get(), rightPanel_.get()}) {
        SizeDisplayMode mode = panel->sizeDisplayMode();
        toggle(mode);
        panel->setSizeDisplayMode(mode);
    }
}

void OvCommanderView::editCurrentFile() {
    files_.edit(activePanel());
}

void OvCommanderView::revealActiveFolder() {
    files_.reveal(activePanel());
}

void OvCommanderView::openTerminalInActiveFolder() {
    files_.openTerminal(activePanel());
}

void OvCommanderView::quit() {
    desktop_.application.terminate();
}

void OvCommanderView::presentDialog(DialogType type) {
    // Takes the keyboard from a field, too: the new dialog's keys come by way of this view.
    dismissDialog();
    desktop_.preview.orderOut();
    dialogOverlay_ = OvDialogOverlayView::make(bounds(), desktop_);
    dialogOverlay_->setDialogType(std::move(type));
    dialogOverlay_->delegate = std::static_pointer_cast<OvCommanderView>(shared_from_this());
    addSubview(dialogOverlay_);
}

void OvCommanderView::dismissDialog() {
    if (dialogOverlay_) dialogOverlay_->removeFromSuperview();
    dialogOverlay_.reset();
    if (ViewHost* const window = host()) window->focusContent();
}

void OvCommanderView::presentIfAny(std::optional<DialogType> type) {
    if (type) presentDialog(*std::move(type));
}

void OvCommanderView::dialogDidConfirm(const DialogType& type, std::optional<std::string> inputValue) {
    dismissDialog();
    files_.carryOut(type, inputValue, panels());
}

void OvCommanderView::dialogDidCancel() {
    dismissDialog();
}

void OvCommanderView::showHelpDialog() {
    presentDialog(dialog::Help{});
}

void OvCommanderView::showSortDialog() {
    presentDialog(dialog::Sort{});
}

void OvCommanderView::showMkdirDialog() {
    presentDialog(files_.mkdirDialog(activePanel()));
}

void OvCommanderView::showCopyDialog() {
    presentIfAny(files_.copyDialog(panels()));
}

void OvCommanderView::showMoveDialog() {
    presentIfAny(files_.moveDialog(activePanel()));
}

void OvCommanderView::showDeleteDialog() {
    presentIfAny(files_.deleteDialog(activePanel()));
}

void OvCommanderView::showFileViewer() {
    presentIfAny(files_.viewerDialog(activePanel()));
}

void OvCommanderView::layoutPanels() {
    const Rect view = bounds();
    leftPanel_->setFrame(commander::leftPanel(view));
    rightPanel_->setFrame(commander::rightPanel(view));
    if (dialogOverlay_) dialogOverlay_->setFrame(view);
    for (std::size_t index = 0; index < fnButtons_.size(); ++index) {
        fnButtons_[index].rect = commander::fnCell(view, index, fnButtons_.size());
    }
}

std::string OvCommanderView::promptLine() const {
    return commander::promptLine(desktop_.process.userName(), desktop_.process.homeDirectory(),
                                 activePanel().currentPath());
}

Rect OvCommanderView::promptBar() const {
    return commander::promptBar(bounds());
}

void OvCommanderView::draw(Canvas& canvas) {
    commander::paintBars(canvas, bounds(), {promptLine(), fnButtons_}, boldRetroFont_);
}

EventResult OvCommanderView::keyDown(const KeyEvent& event) {
    const std::shared_ptr<View> responder = dialogOverlay_ ? dialogOverlay_ : shared_from_this();
    if (pressedKey_.isStrayRepeat(event, responder)) return EventResult::handled;
    if (const auto dialog = dialogOverlay_) return dialog->keyDown(event);
    if (event.repeat == KeyRepeat::held && !mayRepeat(event)) return EventResult::handled;
    if (const KeyBinding* const binding = bindingOf(event)) {
        binding->run(*this);
        return EventResult::handled;
    }
    return quickSearch(event) == EventResult::handled ? EventResult::handled : closePreview(event);
}

// A search of its own for each press, also while the command key is held.
EventResult OvCommanderView::quickSearch(const KeyEvent& event) {
    const std::string first = text::firstCharacter(event.charactersIgnoringModifiers);
    if (!text::beginsWithLetterOrNumber(first)) return EventResult::ignored;
    activePanel().selectItemByPrefix(first);
    return EventResult::handled;
}

// The preview may stand beside the window without having the keyboard.
EventResult OvCommanderView::closePreview(const KeyEvent& event) {
    if (event.key != Key::escape || !desktop_.preview.isVisible()) return EventResult::ignored;
    desktop_.preview.orderOut();
    return EventResult::handled;
}

EventResult OvCommanderView::mouseDown(const MouseEvent& event) {
    const Point place = convertFromWindow(event.locationInWindow);
    const auto hit =
        std::ranges::find_if(fnButtons_, [&](const FnButton& b) { return b.rect.contains(place); });
    if (hit == fnButtons_.end()) return EventResult::ignored;
    runFnCommand(static_cast<std::size_t>(hit - fnButtons_.begin()));
    return EventResult::handled;
}

void OvCommanderView::runFnCommand(std::size_t index) {
    const auto key = static_cast<Key>(static_cast<std::size_t>(Key::f1) + index);
    bindingOf({.key = key})->run(*this);
}

void OvCommanderView::panelDidSelect(OvPanelView& panel) {
    if (activePanel_ != &panel) setActive(panel);
}

void OvCommanderView::panelDidActivateItem(OvPanelView&, const FileItem& item) {
    desktop_.workspace.openFile(item.path);
}

void OvCommanderView::panelPathDidChange(OvPanelView&, const std::string&) {
    setNeedsDisplay();
}

void OvCommanderView::showQuickLook() {
    if (dialogOverlay_) return;
    PreviewPanel& preview = desktop_.preview;
    if (preview.isVisible()) {
        preview.orderOut();
        return;
    }
    const auto self = std::static_pointer_cast<OvCommanderView>(shared_from_this());
    preview.setDataSource(self);
    preview.setDelegate(self);
    preview.makeKeyAndOrderFront();
}

// ".." counts as one, although there is nothing to show of it.
int OvCommanderView::numberOfPreviewItems() const {
    return activePanel().selectedItem() ? 1 : 0;
}

std::optional<PreviewItem> OvCommanderView::previewItemAt(int) const {
    const auto item = selectedEntry(activePanel());
    if (!item) return std::nullopt;
    PreviewItem preview{.path = item->path, .name = text::shownText(item->name), .detail = ""};
    if (isCalculated(item->vantrelState)) {
        preview.detail = item->formattedSize(activePanel().sizeDisplayMode());
    }
    return preview;
}

}  // namespace vantrel
