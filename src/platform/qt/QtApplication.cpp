#include "platform/qt/QtApplication.h"

#include <QProxyStyle>
#include <cstdio>
#include <cstdlib>

namespace vantrel {

namespace {

/// The desktop's style, but a tap on Alt leaves the keyboard where it is.
class QtStyle final : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* answer) const override {
        if (hint == SH_MenuBar_AltKeyNavigation) return 0;
        return QProxyStyle::styleHint(hint, option, widget, answer);
    }
};

void endOnStartUpFailure(QtMsgType type, const QMessageLogContext&, const QString&) {
    if (type != QtFatalMsg) return;
    std::fputs("vantrel: no display to open a window on; is DISPLAY or WAYLAND_DISPLAY right?\n", stderr);
    std::_Exit(1);
}

void dropMessagesButFatalOnes(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type != QtFatalMsg) return;
    std::fprintf(stderr, "vantrel: %s\n", qPrintable(text));
    std::abort();
}

/// Qt's remarks about the user's session are no output of ours. Who sets Qt's logging variables wants them.
void install(QtMessageHandler handler) {
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES") && !qEnvironmentVariableIsSet("QT_DEBUG_PLUGINS"))
        qInstallMessageHandler(handler);
}

std::string withQuietStart(const char* programName) {
    install(&endOnStartUpFailure);
    QCoreApplication::setApplicationName("vantrel");
    QGuiApplication::setDesktopFileName("com.vantrel.Vantrel");
    return programName == nullptr ? "vantrel" : programName;
}

}  // namespace

QtApplication::QtApplication(const char* programName)
    : programName_(withQuietStart(programName)),
      arguments_{programName_.data(), nullptr},
      application_(argumentCount_, arguments_) {
    install(&dropMessagesButFatalOnes);
    QApplication::setStyle(new QtStyle);
    QApplication::setQuitOnLastWindowClosed(true);
}

std::unique_ptr<Window> QtApplication::makeWindow(const WindowOptions& options) {
    auto window = std::make_unique<QtWindow>(options);
    window_ = window.get();
    return window;
}

void QtApplication::terminate() {
    // Queued, so that it also works before the loop runs. Not quit(), which would ask every window first.
    QMetaObject::invokeMethod(
        &application_, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

void QtApplication::run() {
    QApplication::exec();
}

QtContentWidget* QtApplication::content() const {
    return window_ ? &window_->content() : nullptr;
}

}  // namespace vantrel
