#include "freedesktop/DefaultApplication.h"

#include <fcntl.h>
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <unistd.h>

#include "base/Paths.h"
#include "freedesktop/Launch.h"
#include "freedesktop/SessionBus.h"

namespace vantrel {

namespace {

struct ChildSetup {
    int folder;  ///< -1 where it could not be opened
};

/// Runs in the child between fork and exec, where only async-signal-safe functions may.
void setUpChild(gpointer data) {
    ::setsid();
    const int folder = static_cast<ChildSetup*>(data)->folder;
    if (folder >= 0 && ::fchdir(folder) != 0) return;
}

bool start(GAppInfo* application, const std::string& path) {
    if (!G_IS_DESKTOP_APP_INFO(application)) return false;
    std::string url = paths::fileUrl(path);
    GList urls{.data = url.data(), .next = nullptr, .prev = nullptr};
    const Result<FileDescriptor> folder = launching::openToEnter(paths::deletingLastComponent(path));
    ChildSetup setup{folder ? folder->number() : -1};
    const FileDescriptor null(::open("/dev/null", O_RDWR | O_CLOEXEC));
    // Without a callback for its process number, nobody has to wait for the child.
    return g_desktop_app_info_launch_uris_as_manager_with_fds(
               G_DESKTOP_APP_INFO(application), &urls, nullptr, G_SPAWN_SEARCH_PATH, &setUpChild, &setup,
               nullptr, nullptr, null.number(), null.number(), null.number(), nullptr) == TRUE;
}

}  // namespace

OpeningOutcome openWithDefaultApplication(const std::string& path) {
    const ObjectPointer<GDBusConnection> bus = sessionBus();
    // By GIO's own access to local files: its extensions would start their services first.
    const ObjectPointer<GFile> file(g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()));
    GError* reason = nullptr;
    const ObjectPointer<GAppInfo> application(g_file_query_default_handler(file.get(), nullptr, &reason));
    const ErrorPointer error(reason);
    if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_NOT_FOUND))
        return OpeningOutcome::noFile;
    if (!application || !start(application.get(), path)) return OpeningOutcome::noApplication;
    return OpeningOutcome::opened;
}

}  // namespace vantrel
