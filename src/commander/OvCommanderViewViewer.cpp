#include "commander/OvCommanderView.h"

#include "platform/FileManager.h"
#include "text/Text.h"

namespace vantrel {

namespace {

constexpr std::size_t viewedBytes = 200'000;  // from the start of the file

}  // namespace

void OvCommanderView::showFileViewer() {
    const std::shared_ptr<FileItem> file = selectedFile();
    if (!file) return;
    auto content = desktop_.files.readPrefix(file->path, viewedBytes);
    std::string text;
    if (!content) {
        text = "Error reading file: " + content.error().message();
    } else if (content->empty()) {
        // Repairing never empties a text, so only an empty file gets here; the wording promises more.
        text = "(Binary or Empty File: " + file->formattedSize(SizeDisplayMode::humanReadable, 0) + ")";
    } else {
        text = text::repairedUtf8(*content);
    }
    presentDialog(dialog::Viewer{.fileName = file->name, .content = std::move(text)});
}

}  // namespace vantrel
