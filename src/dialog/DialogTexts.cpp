#include "dialog/DialogTexts.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "dialog/ViewerLines.h"
#include "text/Text.h"

namespace vantrel::dialog {

namespace {

constexpr std::size_t keyCharacters = 12;

struct KeyDescription {
    std::string_view key;
    std::string_view description;
};

constexpr std::array<KeyDescription, 20> keyboardReference = {{
    {"TAB", "Switch Active Panel (Left <-> Right)"},
    {"ENTER", "Open Folder / Launch File"},
    {"BACKSPACE", "Navigate to Parent Directory"},
    {"SPACE", "macOS QuickLook Preview"},
    {"UP / DOWN", "Navigate items in list"},
    {"PGUP / PGDN", "Scroll page up / page down"},
    {"HOME / END", "Jump to top / bottom of list"},
    {"F1", "Show this Help dialog"},
    {"F2", "Toggle Size format (Human-Readable <-> Bytes)"},
    {"F3", "View File contents (ASCII / Code viewer)"},
    {"F4", "Open File in default system Editor"},
    {"F5", "Copy file/folder to opposite panel"},
    {"F6", "Rename or Move file/folder"},
    {"F7", "Create new Directory (Mkdir)"},
    {"F8", "Delete item (Safely moves to macOS Trash)"},
    {"F9", "Change Sort Order (Size, Name, Date, Ext)"},
    {"F10 / CMD+Q", "Quit application"},
    {"CMD+O", "Reveal current folder in Finder"},
    {"CMD+T", "Open current directory in macOS Terminal"},
    {"TYPE CHARS", "Quick-search & jump to matching item"},
}};

// Each line begins with the digit that chooses it.
constexpr std::array<std::string_view, 4> sortLines = {
    "1.  Name       (Alphabetical)",
    "2.  Size       (Largest Folders & Files first)",
    "3.  Date       (Most recently modified first)",
    "4.  Extension  (By file type)",
};

struct TitleOf {
    std::string operator()(const Copy&) const { return " COPY "; }
    std::string operator()(const Move&) const { return " RENAME / MOVE "; }
    std::string operator()(const Mkdir&) const { return " MAKE DIRECTORY "; }
    std::string operator()(const Delete&) const { return " DELETE (Move to Trash) "; }
    std::string operator()(const Viewer& viewer) const {
        return " VIEW: " + text::shownText(viewer.fileName) + " ";
    }
    std::string operator()(const Help&) const { return " HELP (Keyboard Reference) "; }
    std::string operator()(const Sort&) const { return " SORT ORDER "; }
};

struct ButtonsOf {
    using Labels = std::vector<std::string>;
    Labels operator()(const Copy&) const { return {" Copy ", "Cancel"}; }
    Labels operator()(const Move&) const { return {" Rename ", "Cancel"}; }
    Labels operator()(const Mkdir&) const { return {" Create ", "Cancel"}; }
    Labels operator()(const Delete&) const { return {" Delete ", "Cancel"}; }
    Labels operator()(const Viewer&) const { return {" Close "}; }
    Labels operator()(const Help&) const { return {" OK "}; }
    Labels operator()(const Sort&) const { return {" Select ", "Cancel"}; }
};

struct ProposalOf {
    using Proposal = std::optional<std::string>;
    Proposal operator()(const Copy& copy) const { return copy.destPath; }
    Proposal operator()(const Move& move) const { return move.defaultName; }
    Proposal operator()(const Mkdir&) const { return "New_Folder"; }
    Proposal operator()(const auto&) const { return std::nullopt; }
};

std::string padded(std::string_view label, std::size_t width) {
    std::string text(label);
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string quoted(const std::string& name) {
    return '"' + text::shownText(name) + '"';
}

struct RowsOf {
    using Rows = std::vector<BodyRow>;
    using enum TextStyle;
    const ViewerRoom& room;

    Rows operator()(const Copy& copy) const {
        return {{{"Copy " + quoted(copy.sourceName) + " to destination:"}}};
    }
    Rows operator()(const Move& move) const {
        return {{{"Rename / Move " + quoted(move.sourceName) + " to:"}}};
    }
    Rows operator()(const Mkdir&) const { return {{{"Enter new directory name:"}}}; }
    Rows operator()(const Delete& deletion) const {
        return {{{"Do you really wish to delete:"}},
                {{text::shownText(deletion.itemName), emphasised}},
                {{"(Item will be safely placed in macOS Trash)"}}};
    }
    Rows operator()(const Viewer& viewer) const {
        Rows rows;
        for (std::string& line : viewerLines(viewer.content, room.lines, room.bytesPerLine)) {
            rows.push_back({{std::move(line), fileContent}});
        }
        return rows;
    }
    Rows operator()(const Help&) const {
        Rows rows;
        for (const auto& [key, description] : keyboardReference) {
            rows.push_back({{padded(key, keyCharacters), strong}, {std::string(description)}});
        }
        return rows;
    }
    Rows operator()(const Sort&) const {
        Rows rows;
        for (const std::string_view line : sortLines) rows.push_back({{std::string(line)}});
        return rows;
    }
};

}  // namespace

std::string title(const DialogType& type) {
    return std::visit(TitleOf{}, type);
}

std::vector<std::string> buttonLabels(const DialogType& type) {
    return std::visit(ButtonsOf{}, type);
}

std::optional<std::string> proposedInput(const DialogType& type) {
    return std::visit(ProposalOf{}, type);
}

std::vector<BodyRow> bodyRows(const DialogType& type, const ViewerRoom& room) {
    return std::visit(RowsOf{room}, type);
}

}  // namespace vantrel::dialog
