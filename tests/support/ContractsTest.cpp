#include "support/MainQueueContract.h"
#include "support/ManualMainQueue.h"
#include "support/ManualTimers.h"
#include "support/RecordingCanvas.h"
#include "support/TextMeasureContract.h"
#include "support/TimerContract.h"

namespace vantrel::test {

class ManualMainQueueSubject {
public:
    MainQueue& queue() { return queue_; }
    void runAll() { queue_.runAll(); }

private:
    ManualMainQueue queue_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Manual, MainQueueContract, ManualMainQueueSubject);

class ManualTimersSubject {
public:
    TimerFactory& timers() { return timers_; }
    void turn() { timers_.tickAll(); }

private:
    ManualTimers timers_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Manual, TimerContract, ManualTimersSubject);

class RecordingCanvasSubject {
public:
    Canvas& canvas() { return canvas_; }
    Font font() const { return {"Menlo", 13}; }

private:
    RecordingCanvas canvas_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Recording, TextMeasureContract, RecordingCanvasSubject);

}  // namespace vantrel::test
