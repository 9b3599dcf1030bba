#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/AppDelegate.h"
#include "fuzz/Input.h"
#include "fuzz/core/TotalsModel.h"
#include "support/FakeDesktop.h"

namespace vantrel::fuzz {

/// A main queue and a queue of walks that ask the engine something whenever it calls them. An engine that
/// held its lock then would wait for itself for ever.
class ProbingMainQueue final : public MainQueue {
public:
    explicit ProbingMainQueue(MainQueue& next) : next_(next) {}
    void post(Task task) override {
        if (const auto held = engine.lock()) (void)held->isCalculating("");
        next_.post(std::move(task));
    }
    std::weak_ptr<VantrelEngine> engine;

private:
    MainQueue& next_;
};

class ProbingWalkQueue final : public WalkQueue {
public:
    ProbingWalkQueue(WalkQueue& next, const TotalsModel& model) : next_(next), model_(model) {}
    void submit(std::string root, std::stop_token stop, std::unique_ptr<WalkObserver> observer) override {
        if (const auto held = engine.lock()) (void)held->isCalculating("");
        totals.push_back(model_.totalsOf(root));
        next_.submit(std::move(root), std::move(stop), std::move(observer));
    }
    bool catchUp(Seconds lent) override { return next_.catchUp(lent); }
    std::weak_ptr<VantrelEngine> engine;
    std::vector<WalkTotals> totals;  ///< of each walk, read as early as a walk can read

private:
    WalkQueue& next_;
    const TotalsModel& model_;
};

/// The whole program from its launch on, on fakes: no thread, no display, no real file.
class Program {
public:
    explicit Program(Input& input);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Lets one event happen, chosen by `input`, and holds the program against its rules.
    void step(Input& input);

    /// Lets everything that is under way come to its end: no row may still await its size then.
    void settle();

private:
    using Event = void (Program::*)(Input&);

    void pressKey(Input& input);
    void pressCommandKey(Input& input);
    void type(Input& input);
    void click(Input& input);
    void doubleClick(Input& input);
    void clickRow(Input& input);
    void turnWheel(Input& input);
    void resize(Input& input);
    void chooseMenuItem(Input& input);
    void changeByCommand(Input& input);
    void useField(Input& input);
    void passKeyThroughPreview(Input& input);
    void tick(Input& input);
    void advanceClock(Input& input);
    void serveQueue(Input& input);
    void advanceWalk(Input& input);
    void changeFiles(Input& input);
    void failFiles(Input& input);

    OvCommanderView& commander() { return app_->commanderView(); }
    void send(const KeyEvent& event);
    void clickAt(Point place, int clickCount);
    void endWalk(std::size_t index, Input& input);
    void check();
    void checkOperations();
    void checkSizes(const OvPanelView& panel) const;
    void expectVisibleCursorAfter(Key key, const std::function<void()>& event);

    test::FakeDesktop desktop_;
    const std::unique_ptr<TotalsModel> model_;
    ProbingMainQueue mainQueue_{desktop_.mainQueue};
    ProbingWalkQueue walkQueue_{desktop_.walks, *model_};
    test::CountingHost host_;
    ClickRouter clicks_;
    std::vector<WalkTotals> totals_;  ///< so far, of the walks in the order of their submission
    std::size_t operations_ = 0;      ///< on files, before the last event
    bool wasAsked_ = false;           ///< whether a dialog about files was open then
    std::unique_ptr<AppDelegate> app_;
};

}  // namespace vantrel::fuzz
