#include "commander/OvCommanderView.h"

#include <array>
#include <cmath>

#include "base/Precondition.h"
#include "platform/Application.h"
#include "platform/FileManager.h"
#include "platform/ProcessInfo.h"
#include "platform/Workspace.h"
#include "theme/OvPalette.h"

namespace vantrel {

namespace {

constexpr double fontSize = 13;         // points
constexpr double gapBetweenPanels = 2;  // points
constexpr double fnBarMargin = 5;       // left of the first cell
constexpr double fnCellGap = 4;
constexpr double fnCellTop = 2;  // below the top of the bar
constexpr double fnCellHeight = 22;

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
    setupFnButtons();
    layoutPanels();
}

void OvCommanderView::setupFnButtons() {
    static constexpr std::array labels{"Help",   "Bytes/HR", "View",   "Edit", "Copy",
                                       "RenMov", "Mkdir",    "Delete", "Sort", "Quit"};
    fnButtons_.clear();
    for (std::size_t index = 0; index < labels.size(); ++index) {
        fnButtons_.push_back({std::to_string(index + 1), labels[index], {}});
    }
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
    const Rect area = bounds();
    const double panelHeight = area.height - topMenuBarHeight - promptBarHeight - bottomFnBarHeight;
    const double leftWidth = std::floor((area.width - gapBetweenPanels) * 0.5);
    const double rightX = leftWidth + gapBetweenPanels;
    leftPanel_->setFrame({0, topMenuBarHeight, leftWidth, panelHeight});
    rightPanel_->setFrame({rightX, topMenuBarHeight, area.width - rightX, panelHeight});
    if (dialogOverlay_) dialogOverlay_->setFrame(area);
    layoutFnButtons();
}

void OvCommanderView::layoutFnButtons() {
    if (fnButtons_.empty()) return;
    const double pitch = (bounds().width - 2 * fnBarMargin) / static_cast<double>(fnButtons_.size());
    const double top = bounds().height - bottomFnBarHeight + fnCellTop;
    for (std::size_t index = 0; index < fnButtons_.size(); ++index) {
        const double x = pitch * static_cast<double>(index) + fnBarMargin;
        fnButtons_[index].rect = {x, top, pitch - fnCellGap, fnCellHeight};
    }
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
