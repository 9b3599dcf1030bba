#pragma once

#include <string>

namespace vantrel {

class FileItem;
class OvPanelView;

/// The owner of a panel hears what happened in it. Held weakly by the panel. Main thread only.
class OvPanelViewDelegate {
public:
    virtual ~OvPanelViewDelegate() = default;

    /// A mouse button went down in the panel; nothing else has happened yet.
    virtual void panelDidSelect(OvPanelView& panel) = 0;

    /// The cursor row, a file, was activated.
    virtual void panelDidActivateItem(OvPanelView& panel, const FileItem& item) = 0;

    /// The panel shows another folder, and has loaded it.
    virtual void panelPathDidChange(OvPanelView& panel, const std::string& newPath) = 0;
};

}  // namespace vantrel
