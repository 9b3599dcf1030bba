#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/Events.h"

namespace vantrel {

/// What a preview is asked to show.
struct PreviewItem {
    std::string path;  ///< raw bytes
    std::string name;  ///< valid UTF-8, harmless to show
    /// Valid UTF-8; what is known besides the content, such as a folder's total; may be empty.
    std::string detail;
    bool operator==(const PreviewItem&) const = default;
};

/// Says what the preview shows. Asked again and again while the preview is open, so it must be cheap.
class PreviewPanelDataSource {
public:
    virtual ~PreviewPanelDataSource() = default;
    virtual int numberOfPreviewItems() const = 0;
    virtual std::optional<PreviewItem> previewItemAt(int index) const = 0;
};

/// Gets the keys that the open preview does not use itself, so that the cursor can be moved below it.
class PreviewPanelDelegate {
public:
    virtual ~PreviewPanelDelegate() = default;
    virtual EventResult previewPanelHandleKey(const KeyEvent& event) = 0;
};

/// Port: the desktop's preview window. It follows its data source while it is open, closes with Space or
/// Escape, and never waits for what it shows: a FIFO, a device or a huge file included. Main thread only.
class PreviewPanel {
public:
    virtual ~PreviewPanel() = default;

    virtual bool isVisible() const = 0;

    /// Closes it and gives the keyboard back; nothing while it is closed.
    virtual void orderOut() = 0;

    // Either may be gone: without a source there is nothing to show, without a delegate nobody gets the keys.
    virtual void setDataSource(std::weak_ptr<PreviewPanelDataSource> dataSource) = 0;
    virtual void setDelegate(std::weak_ptr<PreviewPanelDelegate> delegate) = 0;

    /// Opens it, or brings it to the front, with the keyboard.
    virtual void makeKeyAndOrderFront() = 0;
};

}  // namespace vantrel
