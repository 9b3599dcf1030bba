#include "commander/OvCommanderView.h"

#include "base/Precondition.h"
#include "commander/BarsPainter.h"
#include "platform/Application.h"
#include "platform/FileManager.h"
#include "platform/ProcessInfo.h"
#include "platform/Workspace.h"
#include "theme/OvPalette.h"

namespace vantrel {

namespace {

constexpr double fontSize = 13;  // points

}  // namespace

OvCommanderView::OvCommanderView(const Desktop& desktop, VantrelEngine& engine, const Rect& frame)
    : View(frame),
      desktop_(desktop),
      files_(desktop),
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

void OvCommanderView::panelDidSelect(OvPanelView& panel) {
    if (activePanel_ != &panel) setActive(panel);
}

void OvCommanderView::panelDidActivateItem(OvPanelView&, const FileItem& item) {
    desktop_.workspace.openFile(item.path);
}

void OvCommanderView::panelPathDidChange(OvPanelView&, const std::string&) {
    setNeedsDisplay();
}

}  // namespace vantrel
