#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "qt/QtMainQueue.h"
#include "qt/QtTestSupport.h"
#include "qt/preview/QtPreviewPanel.h"

namespace vantrel::test {

inline constexpr int previewPatience = 30'000;  // milliseconds

class FakeSource final : public PreviewPanelDataSource, public PreviewPanelDelegate {
public:
    int numberOfPreviewItems() const override { return item || isParent ? 1 : 0; }
    std::optional<PreviewItem> previewItemAt(int) const override { return item; }
    EventResult previewPanelHandleKey(const KeyEvent& event) override {
        keys.push_back(event);
        return EventResult::handled;
    }

    std::optional<PreviewItem> item;
    bool isParent = false;
    std::vector<KeyEvent> keys;
};

/// Stands in for loadPreview: text with the file's path as its content. For "/hanging..." it answers only
/// once it is released, for "/silent..." never.
class FakeFiles {
public:
    QtPreviewPanel::Loader loader() {
        return [released = released_, counts = counts_](const PreviewRequest& request, const std::stop_token&,
                                                        const std::function<void(PreviewContent)>& show) {
            ++counts->asked;
            if (request.path.starts_with("/silent")) return;
            if (request.path.starts_with("/hanging")) released.wait();
            PreviewContent content;
            content.body = TextBody{QString::fromStdString(request.path)};
            show(content);
            ++counts->answered;
        };
    }

    int asked() const { return counts_->asked; }
    int answered() const { return counts_->answered; }
    void release() { release_.set_value(); }

private:
    struct Counts {
        std::atomic<int> asked = 0;
        std::atomic<int> answered = 0;
    };
    std::promise<void> release_;
    std::shared_future<void> released_ = release_.get_future().share();
    std::shared_ptr<Counts> counts_ = std::make_shared<Counts>();
};

inline bool comes(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, previewPatience);
}

inline PreviewItem itemAt(const std::string& path, const std::string& detail = "") {
    return {.path = path, .name = path.substr(path.rfind('/') + 1), .detail = detail};
}

/// For threads that may outlive their test, so it is never destroyed.
inline QtMainQueue& previewQueue() {
    static QtMainQueue& queue = *new QtMainQueue;
    return queue;
}

class PreviewPanelFixture : public testing::Test {
protected:
    PreviewPanelFixture() {
        owner->setContentView(root);
        owner->centerAndShow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(ownersWindow()));
    }

    QtPreviewPanel& open(QtPreviewPanel& panel) {
        panel.setDataSource(source);
        panel.setDelegate(source);
        panel.makeKeyAndOrderFront();
        EXPECT_TRUE(panel.isVisible());
        EXPECT_TRUE(QTest::qWaitForWindowActive(panel.window()));
        return panel;
    }

    void press(QtPreviewPanel& panel, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(panel.window()->windowHandle(), key, modifiers);
    }

    static QWidget* ownersWindow() { return application().content()->window(); }

    static bool showsText(const QtPreviewPanel& panel, const QString& text) {
        const QtPreviewWindow& window = *panel.window();
        return window.shown() == window.text() && window.text()->toPlainText() == text;
    }
    static bool showsFacts(const QtPreviewPanel& panel, const QString& name) {
        const QtPreviewWindow& window = *panel.window();
        return window.shown() == window.facts() && window.facts()->lines().value(0) == name;
    }

    /// Whether the panel, opened on that file of `files`, shows it.
    bool opensOn(QtPreviewPanel& panel, const std::string& path) {
        source->item = itemAt(path);
        open(panel);
        return comes([&] { return showsText(panel, QString::fromStdString(path)); });
    }

    QtMainQueue& queue = previewQueue();
    std::shared_ptr<FakeSource> source = std::make_shared<FakeSource>();
    std::shared_ptr<RecordingView> root = std::make_shared<RecordingView>();
    std::unique_ptr<Window> owner = application().makeWindow({"Owner", {1100, 720}, {100, 100}, {}});
    FakeFiles files;
};

}  // namespace vantrel::test
