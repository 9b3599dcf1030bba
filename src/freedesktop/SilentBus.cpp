#include "freedesktop/SilentBus.h"

#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "freedesktop/GlibPointer.h"

namespace vantrel {

namespace {

/// What an address of the form "unix:path=..." or "unix:abstract=..." names; null for every other one.
ObjectPointer<GSocketAddress> socketOf(const std::string& address) {
    for (const auto& [prefix, kind] :
         {std::pair<std::string_view, GUnixSocketAddressType>{"unix:path=", G_UNIX_SOCKET_ADDRESS_PATH},
          {"unix:abstract=", G_UNIX_SOCKET_ADDRESS_ABSTRACT}}) {
        if (!address.starts_with(prefix)) continue;
        const std::string value = address.substr(prefix.size(), address.find_first_of(",;") - prefix.size());
        const std::unique_ptr<char, decltype(&g_free)> path(g_uri_unescape_string(value.c_str(), nullptr),
                                                            &g_free);
        if (path) {
            return ObjectPointer<GSocketAddress>(g_unix_socket_address_new_with_type(path.get(), -1, kind));
        }
    }
    return nullptr;
}

bool isSilence(const ErrorPointer& error) {
    return g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT) == TRUE ||
           g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK) == TRUE;
}

/// Whether whoever listens there answers the first line that every client of a bus sends. A socket that
/// nobody listens on counts as answering: it makes nobody wait.
bool answers(const ObjectPointer<GSocketAddress>& socket, unsigned seconds) {
    const ObjectPointer<GSocketClient> client(g_socket_client_new());
    g_socket_client_set_timeout(client.get(), seconds);
    GError* reason = nullptr;
    const ObjectPointer<GSocketConnection> connection(
        g_socket_client_connect(client.get(), G_SOCKET_CONNECTABLE(socket.get()), nullptr, &reason));
    if (!connection) return !isSilence(ErrorPointer(reason));
    static constexpr char greeting[] = "\0AUTH\r\n";
    GOutputStream* const out = g_io_stream_get_output_stream(G_IO_STREAM(connection.get()));
    GInputStream* const in = g_io_stream_get_input_stream(G_IO_STREAM(connection.get()));
    char answer = 0;
    if (g_output_stream_write(out, greeting, sizeof greeting - 1, nullptr, &reason) > 0)
        g_input_stream_read(in, &answer, 1, nullptr, &reason);
    return !isSilence(ErrorPointer(reason));
}

}  // namespace

void leaveSilentSessionBus(unsigned seconds) {
    const char* const variable = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    std::string address = variable != nullptr ? variable : "";
    if (variable == nullptr && runtime != nullptr) address = std::string("unix:path=") + runtime + "/bus";
    const ObjectPointer<GSocketAddress> socket = socketOf(address);
    if (socket && !answers(socket, seconds)) ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
}

}  // namespace vantrel
