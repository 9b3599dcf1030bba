#pragma once

#include <QString>
#include <QStringList>

#include "platform/PreviewPanel.h"
#include "qt/preview/PreviewContent.h"

/// What a preview says in words; numbers and dates are written as the user's LC_NUMERIC and LC_TIME demand.
/// Must not run while another thread changes the environment.
namespace vantrel::previewWords {

/// "512 bytes", "1.5 MiB (1,572,864 bytes)"; a kibibyte (KiB) has 1024 bytes.
QString size(quint64 bytes);

/// The item's name, then one line each for what else is known.
QStringList facts(const PreviewItem& item, const PreviewFacts& facts);

/// One line about the file, to stand below its content.
QString caption(const PreviewContent& content);

}  // namespace vantrel::previewWords
