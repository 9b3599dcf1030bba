// Stands in for a desktop's file manager on the session bus: appends each request to the file named by its
// first argument. The second one is its answer: "shown", "refused" or "nothing".
#include <gio/gio.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace {

constexpr const char* interfaceXml =
    "<node><interface name='org.freedesktop.FileManager1'>"
    "<method name='ShowFolders'><arg type='as' direction='in'/><arg type='s' direction='in'/></method>"
    "</interface></node>";

std::string notesFile;
std::string_view answer;

void note(GVariant* parameters) {
    char* const text = g_variant_print(parameters, FALSE);
    if (std::FILE* const file = std::fopen(notesFile.c_str(), "a")) {
        std::fprintf(file, "%s\n", text);
        std::fclose(file);
    }
    g_free(text);
}

void onCall(GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant* parameters,
            GDBusMethodInvocation* invocation, gpointer) {
    if (std::string_view(method) != "ShowFolders") return;
    note(parameters);
    if (answer == "shown") {
        g_dbus_method_invocation_return_value(invocation, nullptr);
    } else if (answer == "refused") {
        g_dbus_method_invocation_return_dbus_error(invocation, "org.example.Refused", "not today");
    }
}

void onBus(GDBusConnection* bus, const char*, gpointer information) {
    static const GDBusInterfaceVTable table{&onCall, nullptr, nullptr, {}};
    g_dbus_connection_register_object(bus, "/org/freedesktop/FileManager1",
                                      static_cast<GDBusNodeInfo*>(information)->interfaces[0], &table,
                                      nullptr, nullptr, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    notesFile = argv[1];
    answer = argv[2];
    GDBusNodeInfo* const information = g_dbus_node_info_new_for_xml(interfaceXml, nullptr);
    g_bus_own_name(G_BUS_TYPE_SESSION, "org.freedesktop.FileManager1", G_BUS_NAME_OWNER_FLAGS_NONE, &onBus,
                   nullptr, nullptr, information, nullptr);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
