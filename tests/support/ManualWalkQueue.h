#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "walk/Walk.h"

namespace vantrel::test {

/// Walks that happen when the test says so: each submitted walk waits until it is told to progress or to end.
class ManualWalkQueue final : public WalkQueue {
public:
    struct Walk {
        std::string root;
        std::stop_token stop;
        std::unique_ptr<WalkObserver> observer;
        bool hasBegun = false;

        /// As a real walk does before anything else.
        void begin() {
            if (!std::exchange(hasBegun, true)) observer->walkDidBegin();
        }

        void progress(WalkTotals soFar) {
            begin();
            observer->walkDidProgress(soFar);
        }
        bool isCancelled() const { return stop.stop_requested(); }

        /// Ends the walk the way that a real one does: one that was cancelled before says so.
        void finish(WalkTotals totals) {
            if (!isCancelled()) begin();
            observer->walkDidEnd(isCancelled() ? WalkOutcome::cancelled : WalkOutcome::finished, totals);
            observer.reset();
        }

        /// The worst case of a race: the walk had not seen the stop yet.
        void finishWithoutLooking(WalkTotals totals) {
            begin();
            observer->walkDidEnd(WalkOutcome::finished, totals);
            observer.reset();
        }

        void failToOpenRoot() {
            begin();
            observer->walkDidEnd(WalkOutcome::rootUnreadable, {});
            observer.reset();
        }
    };

    void submit(std::string root, std::stop_token stop, std::unique_ptr<WalkObserver> observer) override {
        walks.push_back({std::move(root), std::move(stop), std::move(observer)});
    }

    /// The latest walk of that root.
    Walk& walkOf(const std::string& root) {
        const auto found =
            std::find_if(walks.rbegin(), walks.rend(), [&](const Walk& w) { return w.root == root; });
        if (found == walks.rend()) {
            ADD_FAILURE() << "no walk of " << root << " was submitted";
            std::abort();
        }
        return *found;
    }

    std::vector<std::string> roots() const {
        std::vector<std::string> all;
        for (const Walk& walk : walks) all.push_back(walk.root);
        return all;
    }

    /// Ends every walk that has not ended yet.
    void finishAll(WalkTotals totals) {
        for (Walk& walk : walks) {
            if (walk.observer) walk.finish(totals);
        }
    }

    bool catchUp(Seconds lent) override {
        lentTimes.push_back(lent);
        return false;
    }

    std::vector<Walk> walks;
    std::vector<Seconds> lentTimes;
};

}  // namespace vantrel::test
