#include "qt/QtTimerFactory.h"

#include <QObject>
#include <utility>

namespace vantrel {

namespace {

class QtTimer final : public QObject, public Timer {
public:
    QtTimer(std::chrono::milliseconds interval, std::function<void()> tick)
        : tick_(std::make_shared<std::function<void()>>(std::move(tick))) {
        startTimer(interval, Qt::PreciseTimer);
    }

protected:
    void timerEvent(QTimerEvent*) override {
        // The tick may destroy this timer and with it the last other owner of the function that is running.
        const std::shared_ptr<std::function<void()>> tick = tick_;
        (*tick)();
    }

private:
    std::shared_ptr<std::function<void()>> tick_;
};

}  // namespace

std::unique_ptr<Timer> QtTimerFactory::startRepeating(std::chrono::milliseconds interval,
                                                      std::function<void()> tick) {
    return std::make_unique<QtTimer>(interval, std::move(tick));
}

}  // namespace vantrel
