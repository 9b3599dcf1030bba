#pragma once

#include <QPixmap>

#include "qt/preview/PreviewContent.h"

namespace vantrel {

/// A picture for a file whose content is not shown: from the desktop's icon theme, else a drawn folder or
/// page. `size` is the side of its square in points, `ratio` the pixels per point; a theme's picture may be
/// smaller. Main thread only.
QPixmap previewIcon(const PreviewFacts& facts, int size, double ratio);

}  // namespace vantrel
