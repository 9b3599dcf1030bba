#pragma once

#include "freedesktop/FreedesktopWorkspace.h"
#include "platform/Desktop.h"
#include "posix/PosixProcessInfo.h"
#include "posix/PosixStandardOutput.h"
#include "posix/files/PosixFileManager.h"
#include "qt/QtApplication.h"
#include "qt/QtFontCatalog.h"
#include "qt/QtMainQueue.h"
#include "qt/QtTextField.h"
#include "qt/QtTimerFactory.h"
#include "qt/preview/QtPreviewPanel.h"

namespace vantrel {

class VantrelEngine;

/// Every port of the program, plugged into Qt 6, POSIX and the freedesktop.org conventions, and the engine on
/// top of them. One for the life of the process, on the main thread. Its end waits for no walk; what walks
/// still report then is dropped.
class QtDesktop {
public:
    /// `programName` is argv[0]. Without a display the process ends, see QtApplication.
    explicit QtDesktop(const char* programName);
    QtDesktop(const QtDesktop&) = delete;
    QtDesktop& operator=(const QtDesktop&) = delete;
    ~QtDesktop();

    Desktop ports();
    VantrelEngine& engine();
    QtApplication& application() { return application_; }

private:
    QtApplication application_;
    QtMainQueue& mainQueue_;
    PosixFileManager files_;
    QtFontCatalog fonts_;
    QtPreviewPanel preview_;
    PosixProcessInfo process_;
    PosixStandardOutput output_;
    QtTextFieldFactory textFields_;
    QtTimerFactory timers_;
    FreedesktopWorkspace workspace_;
};

}  // namespace vantrel
