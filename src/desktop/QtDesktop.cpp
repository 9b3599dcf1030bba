#include "desktop/QtDesktop.h"

#include "freedesktop/SilentBus.h"
#include "model/engine/VantrelEngine.h"
#include "posix/CoarseCalendar.h"
#include "posix/CoarseClock.h"
#include "posix/DirectoryReaders.h"
#include "posix/SystemClock.h"
#include "qt/accessibility/QtAccessibleContent.h"
#include "walk/WalkPool.h"

namespace vantrel {

namespace {

/// A bus that works answers in less than a millisecond, one on a busy machine still long before this.
constexpr unsigned secondsForTheBus = 3;

const char* withoutASilentBus(const char* programName) {
    leaveSilentSessionBus(secondsForTheBus);
    return programName;
}

}  // namespace

QtDesktop::QtDesktop(const char* programName)
    : application_(withoutASilentBus(programName)),
      // Never destroyed, like the clocks and the pool below: walks use them until the process has ended.
      mainQueue_(*new QtMainQueue),
      preview_(application_, mainQueue_),
      textFields_(application_) {
    installQtAccessibility();
    application_.setTerminationHandler([this] { mainQueue_.close(); });
    VantrelEngine::provideShared([&queue = mainQueue_] {
        const auto& clock = *new SystemClock;
        auto& known = *new KnownTotals(clock, *new CoarseCalendar);
        auto& pool = *new WalkPool(
            *new CoarseClock,
            {.makeReader = makeNativeReader, .descriptorBudget = descriptorBudgetOfWalks(), .known = &known});
        return VantrelEngineServices{
            .calculationQueue = pool, .mainQueue = queue, .clock = clock, .known = &known};
    });
}

QtDesktop::~QtDesktop() {
    mainQueue_.close();
}

Desktop QtDesktop::ports() {
    return {.application = application_,
            .files = files_,
            .fonts = fonts_,
            .mainQueue = mainQueue_,
            .preview = preview_,
            .process = process_,
            .output = output_,
            .textFields = textFields_,
            .timers = timers_,
            .workspace = workspace_};
}

VantrelEngine& QtDesktop::engine() {
    return VantrelEngine::shared();
}

}  // namespace vantrel
