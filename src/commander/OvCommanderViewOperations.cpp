#include "commander/OvCommanderView.h"

#include <array>
#include <string_view>
#include <utility>

#include "base/Paths.h"
#include "platform/FileManager.h"
#include "platform/StandardOutput.h"

namespace vantrel {

namespace {

// Taken as typed: blanks count.
bool isUsable(const std::optional<std::string>& input) {
    return input && !input->empty();
}

}  // namespace

// The other panel shows what came of it, also when nothing did: errors are not reported.
void OvCommanderView::carryOut(const dialog::Copy& copy, const std::optional<std::string>& input) {
    if (!isUsable(input)) return;
    (void)desktop_.files.copyItem(copy.sourcePath, *input);
    otherPanel().loadDirectory();
}

// The input counts from the item's own folder, one that begins with "/" too.
void OvCommanderView::carryOut(const dialog::Move& move, const std::optional<std::string>& input) {
    if (!isUsable(input)) return;
    const std::string folder = paths::deletingLastComponent(move.sourcePath);
    (void)desktop_.files.moveItem(move.sourcePath, paths::appending(folder, *input));
    activePanel().loadDirectory(input);
}

void OvCommanderView::carryOut(const dialog::Mkdir& mkdir, const std::optional<std::string>& input) {
    if (!isUsable(input)) return;
    (void)desktop_.files.createDirectory(paths::appending(mkdir.currentPath, *input));
    activePanel().loadDirectory(input);
}

void OvCommanderView::carryOut(const dialog::Delete& deletion, const std::optional<std::string>&) {
    if (const std::error_code error = desktop_.files.trashItem(deletion.itemPath)) {
        desktop_.output.writeLine("Error moving to trash: " + error.message());
    }
    activePanel().loadDirectory();
}

void OvCommanderView::carryOut(const dialog::Sort&, const std::optional<std::string>& input) {
    static constexpr std::array<std::pair<std::string_view, SortField>, 4> fields{{{"name", SortField::name},
                                                                                   {"size", SortField::size},
                                                                                   {"date", SortField::date},
                                                                                   {"ext", SortField::ext}}};
    for (const auto& [key, field] : fields) {
        if (input == key) activePanel().setSortField(field);
    }
}

}  // namespace vantrel
