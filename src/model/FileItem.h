#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/FileTime.h"
#include "model/SizeDisplayMode.h"
#include "model/Uuid.h"
#include "model/VantrelState.h"
#include "model/engine/FolderPlace.h"

namespace vantrel {

/// What a row is built from.
struct FileItemFields {
    std::string name;  ///< bytes as the file system gave them
    std::string path;
    bool isDirectory = false;
    bool isParentDir = false;
    bool isExecutable = false;
    bool isSymlink = false;
    bool isHidden = false;
    std::int64_t size = 0;  ///< bytes
    VantrelState vantrelState = state::NotCalculated{};
    FileTime modDate = std::chrono::system_clock::now();
    std::unique_ptr<const FolderPlace> place = nullptr;  ///< of a folder, as far as it is known
};

/// Writes dates by one fixed pattern in the user's locale and time zone.
struct DatePattern {
    std::string_view pattern;
    std::string string(FileTime date) const;
};

/// One row of a panel: a file, a folder or "..". A reference type: lists and size callbacks share it, and it
/// is known by its `id`. Only `size` and `vantrelState` change. Main thread only.
class FileItem {
public:
    explicit FileItem(FileItemFields fields);
    FileItem(const FileItem&) = delete;
    FileItem& operator=(const FileItem&) = delete;

    /// The fields of the row ".." of a panel that shows `path`.
    static FileItemFields parentDirectory(std::string_view path);

    const Uuid id = Uuid::random();
    const std::string name;
    const std::string path;
    const bool isDirectory;
    const bool isParentDir;
    const bool isExecutable;
    const bool isSymlink;
    const bool isHidden;
    std::int64_t size;
    VantrelState vantrelState;
    const FileTime modDate;
    const std::string fileExtension;  ///< lower case, UTF-8; "" for folders

    /// Of a folder, as far as it is known.
    const FolderPlace& place() const;

    /// The file URL of `path`, percent-encoded from its bytes.
    std::string url() const;

    /// The number that a sort by size uses: the size of a file, the running or final total of a folder, else
    /// 0.
    std::int64_t effectiveSize() const;

    /// Text of the size column. `spinnerFrame` counts the ticks of the spinner and is not negative.
    std::string formattedSize(SizeDisplayMode displayMode, std::int64_t spinnerFrame = 0) const;

    /// Text of a count of bytes. Units are binary; the decimal point is always a point.
    static std::string formatBytes(std::int64_t bytes, SizeDisplayMode mode);

    std::string formattedDate() const;  ///< "" for ".."
    std::string formattedTime() const;  ///< "" for ".."

    static constexpr DatePattern dateFormatter{"yyyy-MM-dd"};
    static constexpr DatePattern timeFormatter{"HH:mm"};

    /// Orders names naturally when compared bytewise; made at the first call and kept.
    const std::string& naturalSortKey() const;

private:
    const std::unique_ptr<const FolderPlace> place_;  // files have none, and are many
    mutable std::string naturalSortKey_;
};

}  // namespace vantrel
