#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Geometry.h"

namespace vantrel {

class View;

enum class AccessibleRole : std::uint8_t { group, table, dialog, columnHeader, cell, button, label };

/// A part of a view that assistive technology knows, though it is no view of its own. Texts are UTF-8.
struct AccessibleElement {
    AccessibleRole role = AccessibleRole::label;
    std::string name;
    std::string description;  ///< what the name does not say
    std::string keyBinding;   ///< the key that does the same as pressing the element, such as "F5"
    Rect frame;               ///< in the view's coordinates; without extent while it is scrolled away
    bool isPressable = false;
    bool isSelectable = false;
    bool isSelected = false;

    bool isOnShow() const { return frame.width > 0 && frame.height > 0; }
};

/// What a view tells assistive technology about itself. It is answered when somebody asks and kept nowhere,
/// so a table of any length costs nothing until then. Main thread only.
class Accessible {
public:
    virtual ~Accessible() = default;

    virtual AccessibleRole role() const = 0;
    virtual std::string name() const = 0;

    /// In the view's coordinates.
    virtual Rect frame() const = 0;

    virtual std::size_t elementCount() const = 0;
    virtual AccessibleElement element(std::size_t index) const = 0;
    virtual std::optional<std::size_t> elementAt(Point place) const;

    /// The elements that a user can see now.
    virtual std::vector<std::size_t> shownElements() const;

    /// Where the cursor stands, also while another view has the keyboard.
    virtual std::optional<std::size_t> selectedElement() const { return std::nullopt; }

    /// What the view's keys act on, while it is this view that has the keyboard.
    virtual std::optional<std::size_t> focusedElement() const = 0;

    /// Like a click that opens or does something; nothing for an element that is not pressable.
    virtual void press(std::size_t index) = 0;

    /// Puts the cursor there; nothing for an element that is not selectable.
    virtual void select(std::size_t) {}

    /// 0 for what is no table. A table's elements are its column headers and then its cells, row by row.
    virtual std::size_t columnCount() const { return 0; }

    /// Grows whenever elements have come, gone or changed places.
    virtual std::uint64_t revision() const { return 0; }
};

struct AccessiblePlace {
    View* view = nullptr;
    std::size_t element = 0;
    bool operator==(const AccessiblePlace&) const = default;
};

/// Where the keyboard is in that tree of views; an open dialog keeps it to itself. Nothing where a native
/// field has it.
std::optional<AccessiblePlace> accessibleFocus(View& root);

/// Whether a dialog lies on top of the view, so that nothing in it can be pressed or selected.
bool isBehindDialog(View& view);

}  // namespace vantrel
