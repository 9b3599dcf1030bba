#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "app/AppDelegate.h"
#include "desktop/QtDesktop.h"
#include "posix/SearchPath.h"
#include "posix/StandardDescriptors.h"

namespace {

constexpr const char* help =
    "Usage: vantrel [LEFT [RIGHT]]\n"
    "\n"
    "A file manager with two panels that shows the size of every folder, counted as you look.\n"
    "LEFT and RIGHT are the folders to begin with; by default the working directory and the\n"
    "home folder. A folder that does not exist is ignored.\n"
    "\n"
    "  --help     show this text and leave\n"
    "  --version  show the version and leave\n";

/// Returns the exit status.
int print(const char* text) {
    std::fputs(text, stdout);
    return vantrel::deliverStandardOutput("vantrel") ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    vantrel::occupyStandardDescriptors();
    vantrel::keepOnlyAbsoluteSearchPaths();
    const std::vector<std::string> arguments(argv, argv + argc);
    if (arguments.size() == 2 && arguments[1] == "--help") return print(help);
    if (arguments.size() == 2 && arguments[1] == "--version") return print("vantrel " VANTREL_VERSION "\n");

    vantrel::QtDesktop desktop(argc > 0 ? argv[0] : nullptr);
    vantrel::AppDelegate delegate(desktop.ports(), desktop.engine(), arguments);
    delegate.applicationDidFinishLaunching();
    desktop.application().run();
    return 0;
}
