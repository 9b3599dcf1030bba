#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/FakeFileManager.h"
#include "walk/Walk.h"

namespace vantrel::fuzz {

/// Which totals a row may show. Other programs change files unseen, so a folder may show what it held at any
/// time; but nothing from before the last change of our own in it, around it, or of it.
class TotalsModel {
public:
    /// Hears of our own changes from here on. Borrowed.
    explicit TotalsModel(test::FakeFileManager& files);

    /// Another program may have changed something.
    void noteChange() { note({}); }

    /// A walk of that folder is made to fail.
    void noteFailure(const std::string& path) { totals_[path].push_back({}); }

    /// What a walk of that folder finds now.
    WalkTotals totalsOf(const std::string& path) const;

    /// Of what is no folder anything may be shown: the row is of one that has gone.
    bool mayShow(const std::string& path, WalkTotals totals) const;

private:
    using Item = test::FakeFileManager::Item;

    void note(const std::vector<std::string>& changed);
    void note(const Item& folder, const std::string& path, const std::vector<std::string>& changed);
    void takeAlong(const std::string& from, const std::string& to);
    const Item* folderAt(const std::string& path) const;

    test::FakeFileManager& files_;
    std::map<std::string, std::vector<WalkTotals>> totals_;  // that may be shown, by path
};

}  // namespace vantrel::fuzz
