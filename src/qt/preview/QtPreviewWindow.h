#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QStackedWidget>
#include <functional>

#include "platform/Events.h"
#include "platform/PreviewPanel.h"
#include "qt/preview/PreviewViews.h"

namespace vantrel {

/// The preview's own window, which stays above the window it belongs to. It decides nothing, but tells its
/// owner about keys and when it is hidden. Does not keep the program alive. Main thread only.
class QtPreviewWindow final : public QWidget {
public:
    /// `parent` is a top-level window, the owner of this one, or null.
    explicit QtPreviewWindow(QWidget* parent);

    void showNothing();
    void showItem(const PreviewItem& item, const PreviewContent& content);

    /// Called once for every key that is pressed while this window has the keyboard, except for modifiers
    /// alone. Keys that were typed into it but arrive when it is hidden go on to the window it belongs to.
    void setKeyHandler(std::function<void(const KeyEvent&)> handler);

    /// Called when the window has been hidden or closed, by the user or by the program.
    void setHideHandler(std::function<void()> handler);

    // What is shown, one of these at a time.
    QWidget* shown() const { return stack_->currentWidget(); }
    QWidget* empty() const { return empty_; }
    FactsView* facts() const { return facts_; }
    ImageView* image() const { return image_; }
    QPlainTextEdit* text() const { return text_; }
    QScrollArea* pages() const { return pages_; }
    QLabel* caption() const { return caption_; }

protected:
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    void takeKey(const KeyEvent& key);
    bool passOn(QEvent& event);
    void showPages(const QList<QImage>& pages);
    void showBody(const PreviewItem& item, const PreviewContent& content);

    std::function<void(const KeyEvent&)> keyHandler_;
    std::function<void()> hideHandler_;
    // All owned by this widget.
    QStackedWidget* stack_;
    QWidget* empty_;
    FactsView* facts_;
    ImageView* image_;
    QPlainTextEdit* text_;
    QScrollArea* pages_;
    PagesView* pagesView_;
    QLabel* caption_;
};

}  // namespace vantrel
