#pragma once

#include <QIODevice>
#include <functional>
#include <stop_token>

#include "qt/preview/PreviewContent.h"

namespace vantrel {

/// Whether this program was built with a PDF renderer and `beginning` is that of a PDF document.
bool canDrawPages(const QByteArray& beginning);

/// Draws the first pages of the PDF document in `file`, each within `box` (pixels), and after each hands over
/// all that are ready. Returns whether there were any. Any thread; stops between pages.
bool drawPages(QIODevice& file, const QSize& box, const std::stop_token& stop,
               const std::function<void(const PagesBody&)>& show);

}  // namespace vantrel
