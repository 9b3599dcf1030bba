#include "commander/FileCommands.h"

#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Paths.h"
#include "model/engine/VantrelEngine.h"
#include "platform/FileManager.h"
#include "platform/ProcessInfo.h"
#include "platform/StandardOutput.h"
#include "platform/Workspace.h"
#include "text/Text.h"

namespace vantrel {

namespace {

constexpr std::size_t viewedBytes = 200'000;  // from the start of the file

std::shared_ptr<FileItem> selectedFile(const OvPanelView& panel) {
    const std::shared_ptr<FileItem> item = selectedEntry(panel);
    return item && !item->isDirectory ? item : nullptr;
}

/// The operation that a confirmed dialog asks for. The input is taken as typed, blanks included; an empty one
/// asks for nothing.
struct OperationOf {
    using Kind = FileOperation::Kind;
    const std::optional<std::string>& input;

    bool isUsable() const { return input && !input->empty(); }

    /// A relative target counts from the process's folder, not from a panel's.
    std::optional<FileOperation> operator()(const dialog::Copy& copy) const {
        if (!isUsable()) return std::nullopt;
        return FileOperation{.kind = Kind::copy, .item = copy.sourcePath, .target = *input};
    }

    /// The target counts from the item's own folder, also when it begins with "/": the dialog asks for a
    /// name.
    std::optional<FileOperation> operator()(const dialog::Move& move) const {
        if (!isUsable()) return std::nullopt;
        const std::string folder = paths::deletingLastComponent(move.sourcePath);
        return FileOperation{Kind::move, move.sourcePath, paths::appending(folder, *input), input};
    }

    std::optional<FileOperation> operator()(const dialog::Mkdir& mkdir) const {
        if (!isUsable()) return std::nullopt;
        return FileOperation{Kind::makeDirectory, {}, paths::appending(mkdir.currentPath, *input), input};
    }

    std::optional<FileOperation> operator()(const dialog::Delete& deletion) const {
        return FileOperation{.kind = Kind::trash, .item = deletion.itemPath};
    }

    std::optional<FileOperation> operator()(const auto&) const { return std::nullopt; }
};

void sortBy(OvPanelView& panel, const std::optional<std::string>& key) {
    static constexpr std::array<std::pair<std::string_view, SortField>, 4> fields{{{"name", SortField::name},
                                                                                   {"size", SortField::size},
                                                                                   {"date", SortField::date},
                                                                                   {"ext", SortField::ext}}};
    for (const auto& [name, field] : fields) {
        if (key == name) panel.setSortField(field);
    }
}

}  // namespace

std::shared_ptr<FileItem> selectedEntry(const OvPanelView& panel) {
    const std::shared_ptr<FileItem> item = panel.selectedItem();
    return item && !item->isParentDir ? item : nullptr;
}

std::optional<DialogType> FileCommands::copyDialog(const PanelPair& panels) const {
    const auto item = selectedEntry(panels.active);
    if (!item) return std::nullopt;
    return dialog::Copy{item->name, item->path, paths::appending(panels.other.currentPath(), item->name)};
}

std::optional<DialogType> FileCommands::moveDialog(const OvPanelView& panel) const {
    const auto item = selectedEntry(panel);
    if (!item) return std::nullopt;
    return dialog::Move{item->name, item->path, item->name};
}

std::optional<DialogType> FileCommands::deleteDialog(const OvPanelView& panel) const {
    const auto item = selectedEntry(panel);
    if (!item) return std::nullopt;
    return dialog::Delete{item->name, item->path};
}

std::optional<DialogType> FileCommands::viewerDialog(const OvPanelView& panel) const {
    const auto file = selectedFile(panel);
    if (!file) return std::nullopt;
    return dialog::Viewer{.fileName = file->name, .content = viewedText(*file)};
}

DialogType FileCommands::mkdirDialog(const OvPanelView& panel) const {
    return dialog::Mkdir{panel.currentPath()};
}

std::string FileCommands::viewedText(const FileItem& file) const {
    auto content = desktop_.files.readPrefix(file.path, viewedBytes);
    if (!content) return "Error reading file: " + content.error().message();
    if (content->empty()) {
        // Repairing never empties a text, so only an empty file gets here; the wording promises more.
        return "(Binary or Empty File: " + file.formattedSize(SizeDisplayMode::humanReadable, 0) + ")";
    }
    return text::repairedUtf8(*content);
}

void FileCommands::edit(const OvPanelView& panel) const {
    if (const auto file = selectedFile(panel)) desktop_.workspace.openFile(file->path);
}

void FileCommands::reveal(const OvPanelView& panel) const {
    desktop_.workspace.revealFolder(panel.currentPath());
}

void FileCommands::openTerminal(const OvPanelView& panel) const {
    desktop_.workspace.openTerminal(panel.currentPath());
}

void FileCommands::carryOut(const DialogType& type, const std::optional<std::string>& input,
                            const PanelPair& panels) {
    if (std::holds_alternative<dialog::Sort>(type)) return sortBy(panels.active, input);
    const std::optional<FileOperation> operation = std::visit(OperationOf{input}, type);
    if (!operation) return;
    const ChangeWatch changes = watch(*operation);
    const std::error_code error = perform(*operation);
    didPerform(*operation, error, changeBy(*operation, changes), panels);
}

ContentsChange FileCommands::changeBy(const FileOperation& operation, const ChangeWatch& changes) {
    switch (operation.kind) {
        case FileOperation::Kind::move:
            return changes.afterMove();
        case FileOperation::Kind::trash:
            return changes.afterTakingAway();
        default:
            return changes.afterChange();
    }
}

// Of a copied item nothing changes; one that is thrown away comes to the trash.
ChangeWatch FileCommands::watch(const FileOperation& operation) const {
    switch (operation.kind) {
        case FileOperation::Kind::move:
            return {desktop_.files, {operation.item, operation.target}};
        case FileOperation::Kind::trash: {
            std::vector<std::string> places{operation.item};
            for (const std::string& folder : desktop_.files.trashFoldersFor(operation.item)) {
                places.push_back(paths::appending(folder, paths::lastComponent(operation.item)));
            }
            return {desktop_.files, std::move(places)};
        }
        default:
            return {desktop_.files, {desktop_.process.absolutePath(operation.target)}};
    }
}

std::error_code FileCommands::perform(const FileOperation& operation) const {
    switch (operation.kind) {
        case FileOperation::Kind::copy:
            return desktop_.files.copyItem(operation.item, operation.target);
        case FileOperation::Kind::move:
            return desktop_.files.moveItem(operation.item, operation.target);
        case FileOperation::Kind::makeDirectory:
            return desktop_.files.createDirectory(operation.target);
        case FileOperation::Kind::trash:
            return desktop_.files.trashItem(operation.item);
    }
    return {};
}

// What has failed shows in the listing alone; only the trash says why, for nothing there hints at a reason.
//
// Totals from before the change are not believed any more, whatever became of it. The panel that is not
// loaded anew asks for those that it shows.
void FileCommands::didPerform(const FileOperation& operation, std::error_code error,
                              const ContentsChange& change, const PanelPair& panels) const {
    if (error && operation.kind == FileOperation::Kind::trash) {
        desktop_.output.writeLine("Error moving to trash: " + error.message());
    }
    engine_.contentsDidChange(change);
    const bool isCopy = operation.kind == FileOperation::Kind::copy;
    (isCopy ? panels.active : panels.other).contentsDidChange(change);
    (isCopy ? panels.other : panels.active).loadDirectory(operation.selection);
}

}  // namespace vantrel
