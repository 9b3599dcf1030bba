#pragma once

#include "platform/Accessible.h"

namespace vantrel {

class FileItem;
class OvPanelView;

/// A panel as a table: name, size, date and time of each row. Belongs to the panel.
class PanelAccessible final : public Accessible {
public:
    explicit PanelAccessible(OvPanelView& panel) : panel_(panel) {}

    AccessibleRole role() const override { return AccessibleRole::table; }
    std::string name() const override;
    Rect frame() const override;
    std::size_t columnCount() const override;
    std::size_t elementCount() const override;
    AccessibleElement element(std::size_t index) const override;
    std::optional<std::size_t> elementAt(Point place) const override;
    std::vector<std::size_t> shownElements() const override;
    std::optional<std::size_t> selectedElement() const override;
    std::optional<std::size_t> focusedElement() const override;
    void press(std::size_t index) override;
    void select(std::size_t index) override;
    std::uint64_t revision() const override;

private:
    std::int64_t rowCount() const;
    AccessibleElement headerElement(std::size_t column) const;
    AccessibleElement cellElement(std::int64_t row, std::size_t column) const;
    std::string cellText(const FileItem& item, std::size_t column) const;
    std::string sizeText(const FileItem& item) const;

    OvPanelView& panel_;
};

}  // namespace vantrel
