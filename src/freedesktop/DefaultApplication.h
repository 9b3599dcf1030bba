#pragma once

#include <string>

namespace vantrel {

/// What became of an attempt to open a file. `noApplication`: the desktop knows none for it, or could not
/// start it; another way may be tried. `noFile`: there is nothing to open.
enum class OpeningOutcome { opened, noApplication, noFile };

/// Starts the application that the desktop has set for the file's type (freedesktop.org's MIME applications,
/// through GIO), in a session of its own, in the file's folder, with the null device as its input and output.
/// `path` is absolute raw bytes. Waits while the type is looked up, so not for the main thread.
OpeningOutcome openWithDefaultApplication(const std::string& path);

}  // namespace vantrel
