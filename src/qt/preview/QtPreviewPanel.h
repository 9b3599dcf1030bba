#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPointer>
#include <optional>

#include "platform/MainQueue.h"
#include "platform/PreviewPanel.h"
#include "qt/QtApplication.h"
#include "qt/preview/NewestJob.h"
#include "qt/preview/PreviewLoader.h"
#include "qt/preview/QtPreviewWindow.h"

namespace vantrel {

/// The preview as a window of its own above the application's. Files are read on other threads; what comes
/// back too late is dropped. Main thread only.
class QtPreviewPanel final : public QObject, public PreviewPanel {
public:
    /// Runs on another thread, as loadPreview does.
    using Loader = std::function<void(const PreviewRequest&, const std::stop_token&,
                                      const std::function<void(PreviewContent)>& show)>;

    /// Both are borrowed; `mainQueue` outlives every thread of the process.
    QtPreviewPanel(const QtApplication& application, MainQueue& mainQueue, Loader loader = &loadPreview);
    ~QtPreviewPanel() override;

    bool isVisible() const override;
    void orderOut() override;
    void setDataSource(std::weak_ptr<PreviewPanelDataSource> dataSource) override;
    void setDelegate(std::weak_ptr<PreviewPanelDelegate> delegate) override;
    void makeKeyAndOrderFront() override;

    /// Null before the preview has been opened for the first time.
    QtPreviewWindow* window() const { return window_; }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    struct Loading;

    QtPreviewWindow& windowToShow();
    std::optional<PreviewItem> itemToShow() const;
    void follow();
    void load();
    void takeContent(const PreviewContent& content);
    void takeKey(const KeyEvent& key);
    void forget();

    const QtApplication& application_;
    MainQueue& mainQueue_;
    const Loader loader_;
    std::weak_ptr<PreviewPanelDataSource> dataSource_;
    std::weak_ptr<PreviewPanelDelegate> delegate_;
    QPointer<QtPreviewWindow> window_;  ///< the application's window owns it, where there is one
    QBasicTimer timer_;
    std::optional<PreviewItem> item_;        ///< this and the next only while there is a window
    std::optional<PreviewContent> content_;  ///< of item_, as far as it has arrived
    std::shared_ptr<Loading> loading_;       ///< its only owner: reset when its answers are no longer wanted
    NewestJob jobs_;
};

}  // namespace vantrel
