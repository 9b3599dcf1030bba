// A hunt for what takes room, see Hunt.h, through the real window: rows tick, spin, are sorted and painted,
// and a step is over when its last size is on the screen. bench/hunt --window runs it. Needs a display; Xvfb
// does.
//   hunt-in-window FOLDER EMPTY LEVELS
// What is thrown away goes to the trash of $XDG_DATA_HOME. EMPTY is an empty folder, for the other panel.
#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Hunt.h"
#include "app/AppDelegate.h"
#include "desktop/QtDesktop.h"

namespace vantrel::bench {
namespace {

void wait(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void paintNow() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* const window : windows) {
        if (window->isVisible()) window->repaint();
    }
}

void play(const std::string& folder, const std::string& empty, int levels) {
    QtDesktop desktop("hunt-in-window");
    AppDelegate delegate(desktop.ports(), desktop.engine(), {"hunt-in-window", empty, empty});
    delegate.applicationDidFinishLaunching();
    wait(500);  // until the window is on show
    const auto waitUntil = [](const std::function<bool()>& holds) {
        while (!holds()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        paintNow();
    };
    Hunt(delegate.commanderView(), waitUntil).play(folder, levels);
    std::_Exit(0);  // without waiting for anything
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
    const int levels = argc > 3 ? std::atoi(argv[3]) : 0;
    if (argc != 4 || levels < 1) {
        std::fputs("Usage: hunt-in-window FOLDER EMPTY LEVELS\n", stderr);
        return 2;
    }
    vantrel::bench::play(argv[1], argv[2], levels);
}
