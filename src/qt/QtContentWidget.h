#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>
#include <memory>

#include "platform/View.h"
#include "qt/QtFace.h"
#include "qt/WheelSteps.h"

namespace vantrel {

/// Hears of one content, which owns it. Main thread only.
class QtContentObserver {
public:
    virtual ~QtContentObserver() = default;

    /// Whatever changes is painted, so this is where to look for what has changed.
    virtual void contentWasPainted() = 0;

    /// Qt has just told others that the widget has the keyboard.
    virtual void contentGotTheKeyboard() = 0;
};

/// The content area of the window: shows a tree of views and passes Qt's events on to it. Keys go to the
/// root, and none of them to anybody else afterwards. A click leaves the keyboard where it is. Main thread
/// only.
class QtContentWidget final : public QWidget, public ViewHost {
public:
    explicit QtContentWidget(const Color& background, QWidget* parent = nullptr);
    ~QtContentWidget() override;

    /// Shows `root`, which takes the widget's size from now on.
    void setRoot(std::shared_ptr<View> root);

    /// Null before `setRoot`.
    View* root() const { return root_.get(); }

    /// Whether assistive technology may press and select what it sees; it does so without an event.
    bool takesActions() const { return takesActions_; }
    void setTakesActions(bool takes) { takesActions_ = takes; }

    using ObserverFactory = std::unique_ptr<QtContentObserver> (*)(QtContentWidget& content);

    /// Who observes every content that is made from now on.
    static void setObserverFactory(ObserverFactory factory);

    /// Null when it was made before there was a factory.
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
    Redraw timedRedraw_ = Redraw::atOnce;  ///< for whom the timer runs
    bool takesActions_ = true;
    std::unique_ptr<QtContentObserver> observer_;
};

}  // namespace vantrel
