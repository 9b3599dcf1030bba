#include "commander/OvCommanderView.h"

#include "text/Text.h"

namespace vantrel {

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
