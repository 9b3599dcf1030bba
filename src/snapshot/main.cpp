#include <QDeadlineTimer>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QKeySequence>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "app/AppDelegate.h"
#include "desktop/QtDesktop.h"
#include "model/engine/VantrelEngine.h"
#include "platform/Clock.h"
#include "posix/StandardDescriptors.h"
#include "snapshot/SnapshotOptions.h"

namespace vantrel {
namespace {

constexpr const char* help =
    "Usage: vantrel-snapshot [LEFT [RIGHT]] -o FILE [--size WxH] [--scale N] [--press KEY]...\n"
    "\n"
    "Draws the window of vantrel without a display, waits until every folder has its size, and\n"
    "writes it to FILE as PNG.\n"
    "\n"
    "  --size WxH   size of the window's content in points, 1100x720 by default\n"
    "  --scale N    pixels per point, 1 by default\n"
    "  --press KEY  a key to press before, such as F5 or Down; may be repeated\n"
    "  --help       show this text and leave\n"
    "  --version    show the version and leave\n";

constexpr std::chrono::minutes patience{5};
constexpr Seconds lentAtOnce{0.1};  // of this thread, where walks get none of their own

/// Returns the exit status.
int print(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    return deliverStandardOutput("vantrel-snapshot") ? 0 : 1;
}

bool stillCounts(const OvPanelView& panel) {
    return std::ranges::any_of(panel.items(),
                               [](const auto& item) { return isCalculating(item->vantrelState); });
}

bool stillCounts(const OvCommanderView& commander) {
    return stillCounts(commander.leftPanel()) || stillCounts(commander.rightPanel());
}

/// What a name such as "Ctrl+2" stands for; nothing where it stands for no key or for several.
std::optional<QKeyCombination> keyNamed(const std::string& name) {
    const QKeySequence sequence = QKeySequence::fromString(QString::fromStdString(name));
    if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown) return std::nullopt;
    return sequence[0];
}

void press(QWidget& window, const std::string& name) {
    const std::optional<QKeyCombination> key = keyNamed(name);
    if (!key) return;
    QWidget* const target = window.focusWidget();
    QKeyEvent event(QEvent::KeyPress, key->key(), key->keyboardModifiers(),
                    name.size() == 1 ? QString::fromStdString(name) : QString());
    QCoreApplication::sendEvent(target == nullptr ? &window : target, &event);
    QCoreApplication::processEvents();
}

QImage picture(QWidget& content, double scale) {
    QImage image(static_cast<int>(std::lround(content.width() * scale)),
                 static_cast<int>(std::lround(content.height() * scale)), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    QPainter painter(&image);
    content.render(&painter);
    return image;
}

bool save(const QImage& image, const std::string& path) {
    // Opened by its bytes: a name need not be text.
    QFile file;
    std::FILE* const handle = std::fopen(path.c_str(), "wb");
    return handle != nullptr && file.open(handle, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle) &&
           image.save(&file, "PNG") && file.flush();
}

int run(const char* programName, const SnapshotOptions& options) {
    QtDesktop desktop(programName);
    std::vector<std::string> arguments{"vantrel"};
    arguments.insert(arguments.end(), options.folders.begin(), options.folders.end());
    AppDelegate delegate(desktop.ports(), desktop.engine(), arguments);
    delegate.applicationDidFinishLaunching();
    QtContentWidget& content = *desktop.application().content();
    content.setMinimumSize(1, 1);
    content.window()->resize(content.window()->size() + QSize(options.width, options.height) -
                             content.size());
    for (const std::string& key : options.keys) press(*content.window(), key);

    const QDeadlineTimer end(patience);
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        desktop.engine().catchUp(lentAtOnce);
        if (!stillCounts(delegate.commanderView()) || end.hasExpired()) desktop.application().terminate();
    });
    look.start(std::chrono::milliseconds(20));
    desktop.application().run();

    if (stillCounts(delegate.commanderView()))
        std::fputs("vantrel-snapshot: some folders are still being counted\n", stderr);
    if (!save(picture(content, options.scale), options.file)) {
        std::fprintf(stderr, "vantrel-snapshot: cannot write %s\n", options.file.c_str());
        return 1;
    }
    return print(options.file + '\n');
}

}  // namespace
}  // namespace vantrel

int main(int argc, char** argv) {
    vantrel::occupyStandardDescriptors();
    const std::vector<std::string> arguments(argv, argv + argc);
    if (arguments.size() == 2 && arguments[1] == "--help") return vantrel::print(vantrel::help);
    if (arguments.size() == 2 && arguments[1] == "--version")
        return vantrel::print("vantrel-snapshot " VANTREL_VERSION "\n");
    const auto options = vantrel::parseSnapshotOptions(arguments);
    if (!options) {
        std::fputs(vantrel::help, stderr);
        return 2;
    }
    for (const std::string& key : options->keys) {
        if (vantrel::keyNamed(key)) continue;
        std::fprintf(stderr, "vantrel-snapshot: no key is called \"%s\"\n", key.c_str());
        return 2;
    }
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    return vantrel::run(argv[0], *options);
}
