#include "fuzz/core/Program.h"

#include <algorithm>
#include <array>
#include <utility>

#include "fuzz/Target.h"
#include "fuzz/core/FileChanges.h"
#include "fuzz/core/ProgramRules.h"

namespace vantrel::fuzz {

namespace {

constexpr int roundsToSettle = 8;

/// Whether the open dialog, if there is one, is about a change of files.
bool isAskingForChange(const OvCommanderView& commander) {
    if (!commander.dialogOverlay()) return false;
    const DialogType& type = commander.dialogOverlay()->dialogType();
    return !std::holds_alternative<dialog::Viewer>(type) && !std::holds_alternative<dialog::Help>(type) &&
           !std::holds_alternative<dialog::Sort>(type);
}

std::unique_ptr<TotalsModel> filled(test::FakeFileManager& files) {
    fill(files);
    files.tellsIdentities = true;
    return std::make_unique<TotalsModel>(files);
}

}  // namespace

Program::Program(Input& input) : model_(filled(desktop_.files)) {
    static constexpr std::array starts{"", "/", "/start", "~", "/missing", "/file", "/start/alpha"};
    desktop_.engine = VantrelEngine::make({walkQueue_, mainQueue_, desktop_.clock});
    mainQueue_.engine = desktop_.engine;
    walkQueue_.engine = desktop_.engine;
    app_ = std::make_unique<AppDelegate>(
        desktop_.ports(), *desktop_.engine,
        std::vector<std::string>{"vantrel", input.oneOf(starts), input.oneOf(starts)});
    app_->applicationDidFinishLaunching();
    commander().setHost(&host_);
    check();
}

// The window goes first; what is still under way comes too late for it.
Program::~Program() {
    app_.reset();
    for (auto& walk : desktop_.walks.walks) {
        if (walk.observer) walk.finishWithoutLooking({});
    }
    desktop_.mainQueue.runAll();
}

void Program::step(Input& input) {
    // What happens often stands here more than once.
    static constexpr std::array<Event, 32> events{&Program::pressKey,
                                                  &Program::pressKey,
                                                  &Program::pressKey,
                                                  &Program::pressKey,
                                                  &Program::pressKey,
                                                  &Program::pressKey,
                                                  &Program::pressKey,
                                                  &Program::changeByCommand,
                                                  &Program::type,
                                                  &Program::type,
                                                  &Program::pressCommandKey,
                                                  &Program::chooseMenuItem,
                                                  &Program::click,
                                                  &Program::doubleClick,
                                                  &Program::clickRow,
                                                  &Program::clickRow,
                                                  &Program::turnWheel,
                                                  &Program::resize,
                                                  &Program::useField,
                                                  &Program::useField,
                                                  &Program::tick,
                                                  &Program::tick,
                                                  &Program::serveQueue,
                                                  &Program::serveQueue,
                                                  &Program::serveQueue,
                                                  &Program::advanceWalk,
                                                  &Program::advanceWalk,
                                                  &Program::advanceWalk,
                                                  &Program::advanceClock,
                                                  &Program::changeFiles,
                                                  &Program::failFiles,
                                                  &Program::passKeyThroughPreview};
    (this->*input.oneOf(events))(input);
    check();
}

void Program::check() {
    checkPanel(commander().leftPanel());
    checkPanel(commander().rightPanel());
    checkDialog(commander(), desktop_);
    checkPreview(commander());
    checkWalks(commander(), *desktop_.engine, desktop_.walks);
    checkDrawing(commander());
    checkOperations();
    checkSizes(commander().leftPanel());
    checkSizes(commander().rightPanel());
}

void Program::checkSizes(const OvPanelView& panel) const {
    for (const auto& row : panel.items()) {
        const auto* const total = std::get_if<state::Calculated>(&row->vantrelState);
        require(total == nullptr || model_->mayShow(row->path, {total->totalBytes, total->itemsCount}),
                "a change of our own shows in every total");
    }
}

void Program::checkOperations() {
    const std::size_t done = desktop_.files.operations.size() - operations_;
    require(done == 0 || (done == 1 && wasAsked_), "files change only when a dialog asked first, and once");
    require(done == 0 || commander().dialogOverlay() == nullptr, "a dialog closes when it is answered");
    operations_ = desktop_.files.operations.size();
    wasAsked_ = isAskingForChange(commander());
}

void Program::settle() {
    Input nothing({});
    for (int round = 0; round < roundsToSettle; ++round) {
        for (std::size_t index = 0; index < desktop_.walks.walks.size(); ++index) endWalk(index, nothing);
        desktop_.mainQueue.runAll();
        check();
        desktop_.timers.tickAll();
    }
    require(!commander().leftPanel().isCalculatingSizes() && !commander().rightPanel().isCalculatingSizes(),
            "no row waits for ever");
}

void Program::tick(Input&) {
    desktop_.timers.tickAll();
}

void Program::advanceClock(Input& input) {
    static constexpr std::array seconds{0.05, 0.1, 1.0, 299.0, 301.0};
    desktop_.clock.advance(input.oneOf(seconds));
}

void Program::serveQueue(Input& input) {
    if (input.flag()) {
        desktop_.mainQueue.runAll();
    } else {
        desktop_.mainQueue.runOnce();
    }
}

void Program::advanceWalk(Input& input) {
    auto& walks = desktop_.walks.walks;
    totals_.resize(walks.size());
    if (walks.empty()) return;
    // Most walks have ended; look for one that has not from some place on.
    const std::size_t first = input.below(std::min<std::size_t>(walks.size(), 65536));
    for (std::size_t step = 0; step < walks.size(); ++step) {
        const std::size_t index = (first + step) % walks.size();
        if (!walks[index].observer) continue;
        if (input.flag()) {
            endWalk(index, input);
        } else {
            const std::size_t waiting = desktop_.mainQueue.size();
            totals_[index].bytes += input.size() / 1024;
            totals_[index].items += input.byte();
            walks[index].progress(totals_[index]);
            require(!walks[index].isCancelled() || desktop_.mainQueue.size() == waiting,
                    "a cancelled walk reports no progress");
        }
        return;
    }
}

void Program::endWalk(std::size_t index, Input& input) {
    totals_.resize(desktop_.walks.walks.size());
    test::ManualWalkQueue::Walk& walk = desktop_.walks.walks[index];
    if (!walk.observer) return;
    const std::size_t waiting = desktop_.mainQueue.size();
    const bool isCancelled = walk.isCancelled();
    switch (input.below(3)) {
        case 0:
            walk.finish(walkQueue_.totals[index]);
            break;
        case 1:
            walk.finishWithoutLooking(walkQueue_.totals[index]);
            break;
        default:
            model_->noteFailure(walk.root);
            walk.failToOpenRoot();
    }
    require(!isCancelled || desktop_.mainQueue.size() == waiting, "a cancelled walk does not report its end");
    require(isCancelled || !desktop_.engine->isCalculating(walk.root),
            "a walk that has ended is not under way");
}

void Program::changeFiles(Input& input) {
    change(desktop_.files, input);
    model_->noteChange();
}

void Program::failFiles(Input& input) {
    planFault(desktop_.files, input);
}

}  // namespace vantrel::fuzz
