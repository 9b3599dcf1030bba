#pragma once

#include <QEvent>
#include <QObject>

namespace vantrel {

/// While it is down, keeps all of the window system's input from every window of the program, including what
/// was typed or clicked before. Main thread only.
class InputBarrier final : public QObject {
public:
    void letDown();
    void lift();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace vantrel
