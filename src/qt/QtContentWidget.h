#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>
#include <memory>

#include "platform/View.h"
#include "qt/QtFace.h"
#include "qt/WheelSteps.h"

namespace vantrel {

/// Is told about one content widget, which owns it. Main thread only.
class QtContentObserver {
public:
    virtual ~QtContentObserver() = default;

    /// Every change is painted, so this is the moment to look for changes.
    virtual void contentWasPainted() = 0;

    /// Qt has just announced that the widget has the keyboard.
    virtual void contentGotTheKeyboard() = 0;
};

/// The content area of the window: shows a tree of views and passes Qt's events on to it. Keys go to the root
/// and to nobody after it. A click leaves the keyboard where it is. Main thread only.
class QtContentWidget final : public QWidget, public ViewHost {
public:
    explicit QtContentWidget(const Color& background, QWidget* parent = nullptr);
    ~QtContentWidget() override;

    /// Shows `root`, which takes the widget's size from now on.
    void setRoot(std::shared_ptr<View> root);

    /// Null before `setRoot`.
    View* root() const { return root_.get(); }

    /// Whether assistive technology may press and select what it sees, which it does without an input event.
    bool takesActions() const { return takesActions_; }
    void setTakesActions(bool takes) { takesActions_ = takes; }

    using ObserverFactory = std::unique_ptr<QtContentObserver> (*)(QtContentWidget& content);

    /// Makes the observer of every content that is created from now on.
    static void setObserverFactory(ObserverFactory factory);

    /// Null when the content was made before there was a factory.
    QtContentObserver* observer() const { return observer_.get(); }

    void scheduleRedraw(Redraw urgency) override;
    void focusContent() override;

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    void fitRoot();
    void sendKey(const KeyEvent& event);

    Color background_;
    std::shared_ptr<View> root_;
    ClickRouter clicks_;
    QtFaces faces_;
    WheelSteps wheel_;
    QElapsedTimer sinceRedraw_;
    QBasicTimer redrawTimer_;
    Redraw timedRedraw_ = Redraw::atOnce;  ///< what the timer runs for
    bool takesActions_ = true;
    std::unique_ptr<QtContentObserver> observer_;
};

}  // namespace vantrel
