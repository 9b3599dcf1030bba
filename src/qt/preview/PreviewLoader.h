#pragma once

#include <QSize>
#include <functional>
#include <stop_token>
#include <string>

#include "qt/preview/PreviewContent.h"

namespace vantrel {

struct PreviewRequest {
    std::string path;  ///< raw bytes
    QSize imageBox;    ///< pixels; larger pictures are scaled down
    QSize pageBox;     ///< pixels; the size of the pages of documents
};

/// Finds out what can be shown of a file and hands it to `show`, more than once if it comes in parts. A file
/// that cannot be read has only facts, one that is gone not even those. Only regular files are opened, so no
/// FIFO, socket or device is ever touched. Memory is bounded, time is not: for a thread that may hang with
/// its file system. Once stopped it ends soon, perhaps without an answer.
void loadPreview(const PreviewRequest& request, const std::stop_token& stop,
                 const std::function<void(PreviewContent)>& show);

}  // namespace vantrel
