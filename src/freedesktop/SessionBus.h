#pragma once

#include "freedesktop/GlibPointer.h"

namespace vantrel {

/// The user's message bus, or null where there is none; none is started for the purpose. The process survives
/// the end of its bus. Waits for the connection, so not for the main thread.
ObjectPointer<GDBusConnection> sessionBus();

}  // namespace vantrel
