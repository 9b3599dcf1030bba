#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "commander/OvCommanderView.h"

namespace vantrel::bench {

/// Plays how a person looks for what takes room: opens a folder with everything in it sorted by size, enters
/// the largest sub-folder again and again, throws one thing away at the deepest place, and goes up. Says on
/// standard output, in columns between tabs, what each step has cost until every size was final.
///
/// Before each step and at its end a file is asked for that is not there, "begin STEP" and "end STEP", so
/// that who traces system calls can tell the steps.
class Hunt {
public:
    /// Returns when that holds, and all that the program does meanwhile is done.
    using Wait = std::function<void(const std::function<bool()>&)>;

    Hunt(OvCommanderView& commander, Wait waitUntil)
        : commander_(commander), waitUntil_(std::move(waitUntil)) {}

    /// At most `levels` deep, as far as there are sub-folders; for none only the first count. Stops the
    /// program when something is not as it has to be.
    void play(const std::string& folder, int levels);

private:
    OvPanelView& panel() { return commander_.leftPanel(); }
    void step(const std::string& name, const std::function<void()>& action);
    void print(const std::string& name, double wall, double processor);
    bool selectLargestFolder();
    void throwLargestAway();

    OvCommanderView& commander_;
    const Wait waitUntil_;
};

}  // namespace vantrel::bench
