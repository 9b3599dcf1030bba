#pragma once

#include <QEvent>
#include <QObject>
#include <QWindow>
#include <deque>
#include <functional>
#include <memory>

namespace vantrel {

/// The keys that the window system has sent already when a modal window is about to open. Qt throws away what
/// waits for a window that one blocks; here it is kept and given to whom it was typed for. Main thread only.
class TypedAhead final : public QObject {
public:
    /// Takes what waits. Clicks among it are dropped, as a modal window does. Everything else that waits is
    /// handled here.
    void collect();

    /// Gives the keys, in their order, to the window that `receiver` names for each; stops at null.
    void deliver(const std::function<QWindow*()>& receiver);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::deque<std::unique_ptr<QEvent>> keys_;
};

}  // namespace vantrel
