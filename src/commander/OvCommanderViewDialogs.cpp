#include "commander/OvCommanderView.h"

#include <utility>

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

}  // namespace vantrel
