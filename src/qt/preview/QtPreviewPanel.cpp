#include "qt/preview/QtPreviewPanel.h"

#include <QScreen>
#include <QTimerEvent>
#include <utility>

namespace vantrel {

namespace {

constexpr int followInterval = 100;   // milliseconds
constexpr QSize pageSize{900, 1300};  // points

}  // namespace

/// A file that is being read for the preview.
struct QtPreviewPanel::Loading {
    QtPreviewPanel& panel;
};

QtPreviewPanel::QtPreviewPanel(const QtApplication& application, MainQueue& mainQueue, Loader loader)
    : application_(application), mainQueue_(mainQueue), loader_(std::move(loader)) {}

QtPreviewPanel::~QtPreviewPanel() {
    delete window_;
}

bool QtPreviewPanel::isVisible() const {
    return window_ && window_->isVisible();
}

void QtPreviewPanel::setDataSource(std::weak_ptr<PreviewPanelDataSource> dataSource) {
    dataSource_ = std::move(dataSource);
}

void QtPreviewPanel::setDelegate(std::weak_ptr<PreviewPanelDelegate> delegate) {
    delegate_ = std::move(delegate);
}

void QtPreviewPanel::makeKeyAndOrderFront() {
    QtPreviewWindow& window = windowToShow();
    follow();
    timer_.start(followInterval, this);
    window.show();
    window.raise();
    window.activateWindow();
}

void QtPreviewPanel::orderOut() {
    if (!isVisible()) return;
    const bool hadKeyboard = window_->isActiveWindow();
    window_->hide();
    if (QWidget* const owner = window_->parentWidget(); hadKeyboard && owner != nullptr)
        owner->activateWindow();
}

QtPreviewWindow& QtPreviewPanel::windowToShow() {
    if (!window_) {
        QtContentWidget* const content = application_.content();
        QWidget* const owner = content == nullptr ? nullptr : content->window();
        window_ = new QtPreviewWindow(owner);
        window_->setKeyHandler([this](const KeyEvent& key) { takeKey(key); });
        window_->setHideHandler([this] {
            forget();
            window_->showNothing();
        });
        // The application's window may also take it along.
        connect(window_, &QObject::destroyed, this, &QtPreviewPanel::forget);
        if (owner != nullptr) {
            QRect place(QPoint(), window_->size());
            place.moveCenter(owner->geometry().center());
            window_->setGeometry(place);
        }
    }
    return *window_;
}

void QtPreviewPanel::timerEvent(QTimerEvent* event) {
    if (event->timerId() == timer_.timerId()) follow();
}

std::optional<PreviewItem> QtPreviewPanel::itemToShow() const {
    const auto source = dataSource_.lock();
    if (!source || source->numberOfPreviewItems() == 0) return std::nullopt;
    return source->previewItemAt(0);
}

void QtPreviewPanel::follow() {
    std::optional<PreviewItem> item = itemToShow();
    if (item == item_) {
        // The old content has stood long enough under the new name.
        if (item_ && !content_) takeContent({});
        return;
    }
    const bool isSameFile = item && item_ && item->path == item_->path;
    item_ = std::move(item);
    if (isSameFile) {
        if (content_) window_->showItem(*item_, *content_);
    } else if (item_) {
        load();
    } else {
        content_.reset();
        loading_.reset();
        jobs_.cancel();
        window_->showNothing();
    }
}

void QtPreviewPanel::load() {
    content_.reset();
    loading_ = std::make_shared<Loading>(Loading{*this});
    window_->setWindowTitle(QString::fromStdString(item_->name));
    const double ratio = window_->devicePixelRatioF();
    const PreviewRequest request{
        .path = item_->path, .imageBox = window_->screen()->size() * ratio, .pageBox = pageSize * ratio};
    jobs_.run([loader = loader_, request, wanted = std::weak_ptr(loading_),
               &queue = mainQueue_](const std::stop_token& stop) {
        loader(request, stop, [&](PreviewContent content) {
            queue.post([wanted, content = std::move(content)] {
                if (const auto loading = wanted.lock()) loading->panel.takeContent(content);
            });
        });
    });
}

void QtPreviewPanel::takeContent(const PreviewContent& content) {
    content_ = content;
    window_->showItem(*item_, *content_);
}

void QtPreviewPanel::takeKey(const KeyEvent& key) {
    if (key.key == Key::escape || key.key == Key::space) {
        // The Space that opened the preview may still be held.
        if (key.key == Key::escape || key.repeat == KeyRepeat::first) orderOut();
    } else if (const auto delegate = delegate_.lock()) {
        delegate->previewPanelHandleKey(key);
        if (isVisible()) follow();
    }
}

void QtPreviewPanel::forget() {
    timer_.stop();
    loading_.reset();
    jobs_.cancel();
    item_.reset();
    content_.reset();
}

}  // namespace vantrel
