#pragma once

#include <QPixmap>

#include "qt/preview/PreviewContent.h"

namespace vantrel {

/// A picture for a file that is not shown itself: from the desktop's icon theme or else a drawn folder or
/// page. `size` is the side of its square in points, `ratio` the pixels per point; what a theme has may be
/// smaller. Main thread only.
QPixmap previewIcon(const PreviewFacts& facts, int size, double ratio);

}  // namespace vantrel
