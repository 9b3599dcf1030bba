#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "model/FileItem.h"
#include "model/SizeDisplayMode.h"
#include "model/SortOrder.h"
#include "panel/ItemOrder.h"
#include "panel/OvPanelViewDelegate.h"
#include "panel/PanelAccessible.h"
#include "panel/PanelCursor.h"
#include "panel/PanelGeometry.h"
#include "panel/PanelState.h"
#include "panel/SizeRequests.h"
#include "platform/Desktop.h"
#include "platform/Font.h"
#include "platform/Timer.h"
#include "platform/View.h"

namespace vantrel {

class ContentsChange;
class VantrelEngine;

/// One file panel: holds together the rows of a folder and their order, the cursor, the sizes that are asked
/// for and what is painted of all that, and turns clicks into changes of it.
/// Main thread only. Owned by shared_ptr: size reports and the spinner's timer hold it weakly.
class OvPanelView final : public View, public SizeRequestsDelegate {
public:
    static constexpr double rowHeight = panel::rowHeight;  ///< points, as are all heights
    static constexpr double headerHeight = panel::headerHeight;
    static constexpr double topBarHeight = panel::topBarHeight;
    static constexpr double bottomBarHeight = panel::bottomBarHeight;

    /// A panel without a folder; the spinner's timer runs from here on. Ports and engine are borrowed.
    static std::shared_ptr<OvPanelView> make(const Desktop& desktop, VantrelEngine& engine);

    std::weak_ptr<OvPanelViewDelegate> delegate;

    /// How assistive technology calls this panel, beside its folder.
    std::string accessibleTitle;

    // State. Each setter does what a change of that property entails: another path cancels the walks below
    // the old one, loads the folder and tells the delegate; a sort setting re-sorts on every assignment, also
    // of the same value; hidden files are loaded anew with the cursor on its default row.
    const std::string& currentPath() const { return currentPath_; }
    void setCurrentPath(const std::string& path);
    bool isActivePanel() const { return isActivePanel_; }
    void setIsActivePanel(bool isActive);
    SortField sortField() const { return sortField_; }
    void setSortField(SortField field);
    SortDirection sortDirection() const { return sortDirection_; }
    void setSortDirection(SortDirection direction);
    SizeDisplayMode sizeDisplayMode() const { return sizeDisplayMode_; }
    void setSizeDisplayMode(SizeDisplayMode mode);
    bool showHiddenFiles() const { return showHiddenFiles_; }
    void setShowHiddenFiles(bool show);

    const ItemList& items() const { return items_; }
    std::int64_t selectedIndex() const { return cursor_.index(); }  ///< outside the list when that is empty
    std::int64_t scrollOffset() const { return cursor_.offset(); }
    std::int64_t spinnerFrame() const { return spinnerFrame_; }
    const Font& retroFont() const { return retroFont_; }
    const Font& boldRetroFont() const { return boldRetroFont_; }

    /// Reads the folder anew. The cursor goes to the entry named `keepSelection` (bytewise), else to the
    /// first row that is not "..". A folder that cannot be read prints one line and shows only "..".
    void loadDirectory(const std::optional<std::string>& keepSelection = std::nullopt);
    void sortItems();

    /// To be called after the engine was told of that change: asks again for the totals on show that are from
    /// before it.
    void contentsDidChange(const ContentsChange& change);

    /// Grows whenever rows have come, gone or changed places.
    std::uint64_t orderRevision() const { return orderRevision_; }

    /// Whether the size of a folder on show is still to come.
    bool isCalculatingSizes() const { return sizes_.areAwaited(); }

    // Cursor.
    std::int64_t visibleRowCount() const { return cursor_.rowsInSight(); }
    std::shared_ptr<FileItem> selectedItem() const;  ///< null when the cursor stands on no row
    void moveUp();
    void moveDown();
    void pageUp();
    void pageDown();
    void home();
    void end();
    void activateCurrentItem();
    void navigateUp();
    void selectItemByPrefix(std::string_view prefix);

    // What assistive technology does in place of a click; like every click, it first tells the delegate.
    void selectRow(std::int64_t row);
    void clickTitle(SortField field);

    /// What a front end paints; asks the file system for the free space at each call.
    PanelState state() const;

    // View.
    void draw(Canvas& canvas) override;
    Accessible* accessible() override { return &accessible_; }
    bool acceptsFirstResponder() const override { return true; }
    EventResult mouseDown(const MouseEvent& event) override;
    EventResult scrollWheel(const ScrollEvent& event) override;

protected:
    void frameDidChange() override;

private:
    OvPanelView(const Desktop& desktop, VantrelEngine& engine);

    std::int64_t rowAfterLoading(const std::optional<std::string>& keepSelection) const;
    void sizeDidChange(FileItem& row) override;
    void orderDidChange();
    void startSpinnerTimer();
    void spinnerTick();
    void goTo(const std::string& path);
    void sortOrToggle(SortField field);

    const Desktop desktop_;
    VantrelEngine& engine_;
    const Font retroFont_;
    const Font boldRetroFont_;

    std::string currentPath_;
    bool isActivePanel_ = false;
    ItemList items_;
    PanelCursor cursor_;
    SortField sortField_ = SortField::name;
    SortDirection sortDirection_ = SortDirection::ascending;
    SizeDisplayMode sizeDisplayMode_ = SizeDisplayMode::humanReadable;
    bool showHiddenFiles_ = false;
    std::int64_t spinnerFrame_ = 0;
    std::uint64_t orderRevision_ = 0;
    ChangedRows changedSinceSort_;
    PanelAccessible accessible_{*this};
    SizeRequests sizes_;
    std::unique_ptr<Timer> spinnerTimer_;
};

}  // namespace vantrel
