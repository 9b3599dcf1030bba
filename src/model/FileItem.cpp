#include "model/FileItem.h"

#include <utility>

#include "base/Paths.h"
#include "base/Precondition.h"
#include "model/engine/HumanReadableBytes.h"
#include "text/Text.h"

namespace vantrel {

namespace {

std::string spinner(std::int64_t spinnerFrame) {
    static constexpr std::string_view frames = R"(|/-\)";
    const std::int64_t index = spinnerFrame % 4;
    precondition(index >= 0, "the spinner counts upwards from 0");
    return std::string(1, frames[static_cast<std::size_t>(index)]);
}

std::string lowerCasedExtension(const FileItemFields& fields) {
    return fields.isDirectory ? "" : text::lowerCased(paths::extension(fields.name));
}

struct SizeText {
    SizeDisplayMode displayMode;
    std::int64_t spinnerFrame;

    std::string operator()(const state::Calculating& running) const {
        const std::string frame = spinner(spinnerFrame);
        if (running.currentBytes == 0) return "[" + frame + " calc] ";
        return "[" + frame + "] " + FileItem::formatBytes(running.currentBytes, displayMode);
    }
    std::string operator()(const state::Calculated& final) const {
        return FileItem::formatBytes(final.totalBytes, displayMode);
    }
    std::string operator()(const state::Error&) const { return "<ERROR>   "; }
    std::string operator()(const state::NotCalculated&) const { return "<DIR>     "; }
    std::string operator()(const state::Parent&) const { return "<UP--DIR>"; }
};

}  // namespace

std::string DatePattern::string(FileTime date) const {
    return text::formattedDate(date, pattern);
}

FileItem::FileItem(FileItemFields fields)
    : name(fields.name),
      path(std::move(fields.path)),
      isDirectory(fields.isDirectory),
      isParentDir(fields.isParentDir),
      isExecutable(fields.isExecutable),
      isSymlink(fields.isSymlink),
      isHidden(fields.isHidden),
      size(fields.size),
      vantrelState(fields.isParentDir ? VantrelState(state::Parent{}) : std::move(fields.vantrelState)),
      modDate(fields.modDate),
      fileExtension(lowerCasedExtension(fields)),
      place_(std::move(fields.place)) {}

FileItemFields FileItem::parentDirectory(std::string_view path) {
    return {.name = "..",
            .path = paths::deletingLastComponent(path),
            .isDirectory = true,
            .isParentDir = true,
            .vantrelState = state::Parent{}};
}

const FolderPlace& FileItem::place() const {
    static const FolderPlace unknown;
    return place_ ? *place_ : unknown;
}

std::string FileItem::url() const {
    return paths::fileUrl(path);
}

std::int64_t FileItem::effectiveSize() const {
    return isDirectory ? bytes(vantrelState) : size;
}

std::string FileItem::formattedSize(SizeDisplayMode displayMode, std::int64_t spinnerFrame) const {
    const SizeText text{displayMode, spinnerFrame};
    if (isParentDir) return text(state::Parent{});
    if (!isDirectory) return formatBytes(size, displayMode);
    return std::visit(text, vantrelState);
}

std::string FileItem::formatBytes(std::int64_t bytes, SizeDisplayMode mode) {
    if (mode == SizeDisplayMode::rawBytes) return text::groupedDecimal(bytes) + " B";
    return humanReadableBytes(bytes);
}

std::string FileItem::formattedDate() const {
    return isParentDir ? "" : dateFormatter.string(modDate);
}

std::string FileItem::formattedTime() const {
    return isParentDir ? "" : timeFormatter.string(modDate);
}

const std::string& FileItem::naturalSortKey() const {
    if (naturalSortKey_.empty()) naturalSortKey_ = text::naturalSortKey(name);
    return naturalSortKey_;
}

}  // namespace vantrel
