#include "freedesktop/FreedesktopWorkspace.h"

#include <array>
#include <cstdlib>
#include <sstream>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "base/Paths.h"
#include "freedesktop/DefaultApplication.h"
#include "freedesktop/Launch.h"
#include "freedesktop/SessionBus.h"

namespace vantrel {

namespace {

template <class Work>
void inBackground(Work work) {
    try {
        std::thread(std::move(work)).detach();
    } catch (const std::system_error&) {
        // No thread could be started: the request fails, as silently as the others.
    }
}

void openWithXdgOpen(const std::string& path) {
    // A failure stays silent, as the port says.
    if (const auto program = launching::programOnPath("xdg-open"))
        (void)launching::launch({*program, paths::fileUrl(path)}, "");
}

/// Whether a file manager has the folder now, or may still get to it.
bool showInFileManager(const std::string& path) {
    const ObjectPointer<GDBusConnection> bus = sessionBus();
    if (!bus) return false;
    const std::string url = paths::fileUrl(path);
    const std::array<const char*, 2> urls{url.c_str(), nullptr};
    GError* reason = nullptr;
    const VariantPointer answer(g_dbus_connection_call_sync(
        bus.get(), "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
        "org.freedesktop.FileManager1", "ShowFolders", g_variant_new("(^ass)", urls.data(), ""), nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &reason));
    const ErrorPointer error(reason);
    // One that is slow to start shows the folder in the end; a second window would be one too many.
    return answer || g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
           g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY);
}

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(std::move(word));
    return words;
}

/// What $TERMINAL names: a program, perhaps with arguments. No shell interprets it.
std::vector<std::string> preferredTerminal() {
    const char* const value = std::getenv("TERMINAL");
    if (value == nullptr) return {};
    if (launching::programOnPath(value)) return {value};
    return wordsOf(value);
}

void startTerminal(const std::string& folder) {
    std::vector<std::vector<std::string>> candidates;
    if (auto preferred = preferredTerminal(); !preferred.empty()) candidates.push_back(std::move(preferred));
    for (const char* name : {"xdg-terminal-exec", "x-terminal-emulator", "gnome-terminal", "kgx", "konsole",
                             "xfce4-terminal", "mate-terminal", "qterminal", "lxterminal", "xterm"})
        candidates.push_back({name});
    for (std::vector<std::string>& command : candidates) {
        const auto program = launching::programOnPath(command.front());
        if (!program) continue;
        command.front() = *program;
        if (!launching::launch(command, folder)) return;
    }
}

}  // namespace

void FreedesktopWorkspace::openFile(const std::string& path) {
    inBackground([path] {
        if (openWithDefaultApplication(path) == OpeningOutcome::noApplication) openWithXdgOpen(path);
    });
}

void FreedesktopWorkspace::revealFolder(const std::string& path) {
    inBackground([path] {
        if (!showInFileManager(path)) openWithXdgOpen(path);
    });
}

void FreedesktopWorkspace::openTerminal(const std::string& path) {
    inBackground([path] { startTerminal(path); });
}

}  // namespace vantrel
