#pragma once

#include <QEvent>
#include <QObject>
#include <QWindow>
#include <deque>
#include <functional>
#include <memory>

namespace vantrel {

/// The keys that the window system has already sent when a modal window is about to open. Qt discards what
/// waits for a window that the modal one blocks; this keeps the keys and gives them to the window they were
/// meant for. Main thread only.
class TypedAhead final : public QObject {
public:
    /// Takes the waiting keys. Waiting clicks are dropped, as a modal window would do. All other waiting
    /// events are handled here.
    void collect();

    /// Gives the keys, in their order, to the window that `receiver` names for each; stops at null.
    void deliver(const std::function<QWindow*()>& receiver);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::deque<std::unique_ptr<QEvent>> keys_;
};

}  // namespace vantrel
