#pragma once

#include <memory>
#include <vector>

#include "panel/ItemOrder.h"

namespace vantrel {

class ContentsChange;
class VantrelEngine;

/// Whoever shows the rows hears of each report.
class SizeRequestsDelegate {
public:
    virtual ~SizeRequestsDelegate() = default;

    /// The row has another running total, or its final one.
    virtual void sizeDidChange(FileItem& row) = 0;
};

/// What a panel has asked the engine, and which rows are still owed a report. Main thread only. Reports come
/// through the main queue, never inside a call; what waits for them there holds neither rows nor delegate.
class SizeRequests {
public:
    /// The engine is borrowed.
    explicit SizeRequests(VantrelEngine& engine) : engine_(engine) {}

    std::weak_ptr<SizeRequestsDelegate> delegate;

    /// Asks for the size of every folder among the rows, in their order; all of them are calculating from
    /// here on. Rows of an earlier list are forgotten, their walks go on.
    void askFor(const ItemList& items);

    /// Asks anew for the rows whose sizes are from before a change that the engine has been told of; answers
    /// whether there are any. Until its new total arrives a row keeps its old one as the total so far, so
    /// that an order by size is not torn apart. A row whose folder has gone keeps its last.
    bool askAfterChange(const ItemList& items, const ContentsChange& change);

    /// Whether a report that is the last for its row is still to come.
    bool areAwaited() const;

    /// Asks anew for rows whose report cannot come any more; to be called now and then while some are
    /// awaited.
    ///
    /// Two panels share one engine and know nothing of each other. A walk of the same folder replaces
    /// the other panel's, and leaving a folder cancels by a prefix of the path's bytes, which reaches the
    /// neighbours whose names begin alike. So each panel looks after its own rows here, and nobody else has
    /// to take care whose walks they end.
    void askAgain();

private:
    /// A folder's row whose final report is still to come.
    struct Awaited {
        std::shared_ptr<FileItem> item;
        /// Where the callback looks for the row; gone when it can bring no report any more.
        std::weak_ptr<std::weak_ptr<FileItem>> request;
    };

    void ask(Awaited& awaited);
    void forgetRequestsOf(const std::vector<Awaited>& outdated);

    VantrelEngine& engine_;

    /// Of the rows that were still calculating when last looked at, so that a tick need not search every row.
    std::vector<Awaited> awaited_;
};

}  // namespace vantrel
