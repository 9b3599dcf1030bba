#pragma once

#include <string>
#include <variant>

namespace vantrel {

/// What each kind of dialog is about. Values, for any thread. Names and paths are raw bytes.
namespace dialog {

/// Copy the named item; `destPath` is the destination that is proposed.
struct Copy {
    std::string sourceName;
    std::string sourcePath;
    std::string destPath;
    bool operator==(const Copy&) const = default;
};

/// Rename or move the named item; `defaultName` is the new name that is proposed.
struct Move {
    std::string sourceName;
    std::string sourcePath;
    std::string defaultName;
    bool operator==(const Move&) const = default;
};

/// Make a folder inside `currentPath`.
struct Mkdir {
    std::string currentPath;
    bool operator==(const Mkdir&) const = default;
};

/// Move the named item to the Trash.
struct Delete {
    std::string itemName;
    std::string itemPath;
    bool operator==(const Delete&) const = default;
};

/// Show a file's text.
struct Viewer {
    std::string fileName;
    std::string content;  ///< UTF-8
    bool operator==(const Viewer&) const = default;
};

/// Show the keyboard reference.
struct Help {
    bool operator==(const Help&) const = default;
};

/// Choose what a panel is sorted by.
struct Sort {
    bool operator==(const Sort&) const = default;
};

}  // namespace dialog

using DialogType = std::variant<dialog::Copy, dialog::Move, dialog::Mkdir, dialog::Delete, dialog::Viewer,
                                dialog::Help, dialog::Sort>;

inline bool isViewer(const DialogType& type) {
    return std::holds_alternative<dialog::Viewer>(type);
}

}  // namespace vantrel
