#include "qt/QtApplication.h"

#include <QDir>
#include <QIcon>
#include <QMessageBox>
#include <QProxyStyle>
#include <QPushButton>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "qt/TypedAhead.h"

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

/// Qt's remarks about the user's session do not belong in our output, except for those who set Qt's logging
/// variables.
void install(QtMessageHandler handler) {
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES") && !qEnvironmentVariableIsSet("QT_DEBUG_PLUGINS"))
        qInstallMessageHandler(handler);
}

constexpr const char* desktopName = "com.vantrel.Vantrel";

/// Tells Qt what it needs to know before its application is made. Returns the program's name.
std::string introduced(const char* programName) {
    install(&endOnStartUpFailure);
    QCoreApplication::setApplicationName("vantrel");
    QGuiApplication::setDesktopFileName(desktopName);
    return programName == nullptr ? "vantrel" : programName;
}

/// The icon of the desktop's theme; the program's own where that has none.
QIcon icon() {
    QIcon own;
    const QDir pictures(":/icon");
    for (const QString& name : pictures.entryList()) own.addFile(pictures.filePath(name));
    return QIcon::fromTheme(desktopName, own);
}

}  // namespace

QtApplication::QtApplication(const char* programName)
    : programName_(introduced(programName)),
      arguments_{programName_.data(), nullptr},
      application_(argumentCount_, arguments_) {
    install(&dropMessagesButFatalOnes);
    QApplication::setStyle(new QtStyle);
    QApplication::setWindowIcon(icon());
    QApplication::setQuitOnLastWindowClosed(true);
}

std::unique_ptr<Window> QtApplication::makeWindow(const WindowOptions& options) {
    auto window = std::make_unique<QtWindow>(options);
    window_ = window.get();
    if (!mainMenu_.empty()) window_->showMenus(mainMenu_);
    return window;
}

void QtApplication::setMainMenu(std::vector<Menu> menus) {
    mainMenu_ = std::move(menus);
    if (window_) window_->showMenus(mainMenu_);
}

void QtApplication::runModal(const Alert& alert) {
    // Not on the stack: the window may be destroyed while the alert is open, and takes it along.
    const QPointer<QMessageBox> box = new QMessageBox(window_);
    box->setIcon(QMessageBox::Information);
    box->setWindowTitle(QString::fromStdString(alert.messageText));
    box->setTextFormat(Qt::PlainText);
    box->setText(QString::fromStdString(alert.messageText));
    box->setInformativeText(QString::fromStdString(alert.informativeText));
    // Gets the keyboard at once, even for keys that come before the window system knows about the alert.
    box->addButton(QString::fromStdString(alert.button).replace('&', "&&"), QMessageBox::AcceptRole)
        ->setFocus();
    TypedAhead typed;
    typed.collect();
    QTimer::singleShot(0, box, [&] {
        typed.deliver([&] { return box && box->isVisible() ? box->windowHandle() : nullptr; });
    });
    box->exec();
    delete box;
    // In case no window manager does it.
    if (window_) window_->activateWindow();
    typed.deliver([this] { return window_ ? window_->windowHandle() : nullptr; });
}

void QtApplication::terminate() {
    // The loop still delivers what the window system has already sent.
    afterTermination_.letDown();
    if (window_) window_->content().setTakesActions(false);
    if (terminationHandler_) terminationHandler_();
    // Queued, so that it also works before the loop runs. Not quit(), which would ask every window first.
    QMetaObject::invokeMethod(
        &application_, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

void QtApplication::run() {
    QApplication::exec();
    afterTermination_.lift();
    if (window_) window_->content().setTakesActions(true);
}

void QtApplication::setTerminationHandler(std::function<void()> handler) {
    terminationHandler_ = std::move(handler);
}

QtContentWidget* QtApplication::content() const {
    return window_ ? &window_->content() : nullptr;
}

}  // namespace vantrel
