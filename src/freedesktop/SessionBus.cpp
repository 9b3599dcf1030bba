#include "freedesktop/SessionBus.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

namespace vantrel {

namespace {

bool isRunning() {
    if (std::getenv("DBUS_SESSION_BUS_ADDRESS") != nullptr) return true;
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    return runtime != nullptr && ::access((std::string(runtime) + "/bus").c_str(), F_OK) == 0;
}

}  // namespace

ObjectPointer<GDBusConnection> sessionBus() {
    if (!isRunning()) return nullptr;
    ObjectPointer<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    // GIO ends the process with its bus unless told otherwise.
    if (bus) g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    return bus;
}

}  // namespace vantrel
