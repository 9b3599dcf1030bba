#include "commander/OvCommanderView.h"

#include <utility>

#include "base/Paths.h"

namespace vantrel {

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

void OvCommanderView::dialogDidConfirm(const DialogType& type, std::optional<std::string> inputValue) {
    dismissDialog();
    std::visit([&](const auto& dialog) { carryOut(dialog, inputValue); }, type);
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
    presentDialog(dialog::Mkdir{activePanel().currentPath()});
}

void OvCommanderView::showCopyDialog() {
    const auto item = selectedEntry();
    if (!item) return;
    presentDialog(
        dialog::Copy{item->name, item->path, paths::appending(otherPanel().currentPath(), item->name)});
}

void OvCommanderView::showMoveDialog() {
    if (const auto item = selectedEntry()) presentDialog(dialog::Move{item->name, item->path, item->name});
}

void OvCommanderView::showDeleteDialog() {
    if (const auto item = selectedEntry()) presentDialog(dialog::Delete{item->name, item->path});
}

}  // namespace vantrel
