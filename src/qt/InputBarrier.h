#pragma once

#include <QEvent>
#include <QObject>

namespace vantrel {

/// Keeps all input of the window system, what has been typed or clicked already as well, from every window of
/// the program while it is down. Main thread only.
class InputBarrier final : public QObject {
public:
    void letDown();
    void lift();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace vantrel
