#pragma once

#include <optional>

#include "qt/preview/PreviewContent.h"
#include "qt/preview/PreviewFile.h"

namespace vantrel {

/// Decodes the picture in `file`, whatever its name, scaled down while it is read where it is larger than
/// `box` (pixels); nothing when it holds none that can be read within the bounds below. Any thread.
std::optional<ImageBody> decodeImage(StoppableFile& file, const QSize& box);

/// Some decoders read the whole file first.
inline constexpr qint64 largestImageFile = qint64{256} << 20;  // bytes

/// One decoded picture, in megabytes. Formats that scale while they are read stay far below it.
inline constexpr int imageAllocationLimit = 256;

/// A PNG picture with more pixels is broken off when it is no longer wanted, a smaller one is read to its
/// end.
inline constexpr qint64 mostPixelsReadOn = qint64{1} << 26;

}  // namespace vantrel
