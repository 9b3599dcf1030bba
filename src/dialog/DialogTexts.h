#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "dialog/DialogType.h"

/// What dialogs say, wherever and in whatever they are painted. Texts are UTF-8 and harmless to show, also
/// those made of file names. Any thread.
namespace vantrel::dialog {

enum class TextStyle : std::uint8_t { plain, strong, emphasised, fileContent };

struct StyledText {
    std::string text;
    TextStyle style = TextStyle::plain;
};

/// The texts that stand side by side in one row of a dialog's body.
using BodyRow = std::vector<StyledText>;

/// How much of a file's text can be shown.
struct ViewerRoom {
    std::size_t lines = 0;
    std::size_t bytesPerLine = 0;
};

/// With a blank at either end, which keeps the frame off the words.
std::string title(const DialogType& type);

/// The labels as they are painted. The blanks belong to them: every label has one at either end but "Cancel".
std::vector<std::string> buttonLabels(const DialogType& type);

/// What the dialog's field begins with, in raw bytes; nothing where the dialog has no field.
std::optional<std::string> proposedInput(const DialogType& type);

/// The rows of the body from top to bottom, of a file no more than there is room for.
std::vector<BodyRow> bodyRows(const DialogType& type, const ViewerRoom& room);

}  // namespace vantrel::dialog
