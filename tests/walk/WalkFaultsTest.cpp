#include <map>
#include <string>

#include "support/ManualCalendar.h"
#include "support/SystemCallFaults.h"
#include "walk/KnownTotals.h"
#include "walk/WalkFixture.h"

// A walk with every one of its system calls failing in every way that its manual page allows: it ends, what
// cannot be read is left out and the rest is right, and no descriptor stays open.

namespace vantrel::test {
namespace {

class WalkFaults : public EveryReader {
protected:
    /// Six files on three levels, and a folder with so many names that the thread moves there to measure.
    void makeTree() {
        folder.makeFolder("a");
        folder.makeFolder("a/b");
        folder.makeFolder("c");
        folder.makeLink("link", "c");
        for (const char* const name : {"1", "a/2", "a/b/3", "c/4"}) folder.makeFile(name, "content");
        folder.makeFolder("wide");
        for (const char first : {'x', 'y', 'z', 'w', 'v'})
            folder.makeFile("wide/" + std::string(250, first), "content");
    }

    void tryEveryFault(WalkPool::Options options) {
        makeTree();
        options.threads = 1;  // so that the calls come in the same order each time
        const auto right = walk(folder.path(), options);
        ASSERT_TRUE(right);
        ASSERT_EQ(right->totals.items, 9);
        const std::int64_t each = right->totals.bytes / right->totals.items;
        std::optional<WalkRecord::End> end;
        const std::size_t cases = test::tryEveryFault(
            {.operate = [&] { end = walk(folder.path(), options); },
             .check = [&](const FaultCase& fault) { expectEnd(end, *right, each, fault); }});
        RecordProperty("cases", static_cast<int>(cases));
    }

    /// What could not be read is missing in no total that is remembered: it is not remembered.
    void expectWholeTotals(KnownTotals& known, const std::map<std::string, std::int64_t>& right,
                           const FaultCase& fault) const {
        // What has gone meanwhile, or is mounted, is not there to be counted.
        if (fault.error == ENOENT || fault.error == EXDEV) return;
        for (const auto& [name, items] : right) {
            struct stat status {};
            ASSERT_EQ(::stat(folder.path(name).c_str(), &status), 0);
            const auto found = known.find({status.st_dev, status.st_ino}, CalendarTime());
            EXPECT_EQ(found ? found->totals.items : items, items) << name;
        }
    }

    static void expectEnd(const std::optional<WalkRecord::End>& end, const WalkRecord::End& right,
                          std::int64_t each, const FaultCase& fault) {
        ASSERT_TRUE(end) << "the walk hangs";
        if (isPassing(fault)) {
            EXPECT_EQ(*end, right);
        } else if (end->outcome == WalkOutcome::rootUnreadable) {
            EXPECT_EQ(end->totals, WalkTotals());
        } else {
            EXPECT_EQ(end->outcome, WalkOutcome::finished);
            EXPECT_LE(end->totals.items, right.totals.items);
            EXPECT_EQ(end->totals.bytes, end->totals.items * each) << "bytes of an entry that is not counted";
        }
    }

    /// What is tried again or done in another way.
    static bool isPassing(const FaultCase& fault) {
        switch (fault.error) {
            case EINTR:
            case EMFILE:
            case ENFILE:
            case SystemCallFaults::givesLess:
                return true;
            case EAGAIN:
            case ENOSYS:
            case EPERM:
                return fault.call == "openat2";
            default:
                return fault.call == "close" || fault.call == "unshare" || fault.call == "fchdir" ||
                       fault.call == "fstatfs";
        }
    }
};
VANTREL_FOR_EVERY_READER(WalkFaults);

TEST_P(WalkFaults, endsWithWhatCanBeRead) {
    tryEveryFault(options());
}

TEST_P(WalkFaults, remembersAndTakesOverOnlyWhatIsWhole) {
    makeTree();
    const ManualCalendar calendar{clock, anHourAheadOf(clock)};
    KnownTotals known{clock, calendar};
    auto remembering = options();
    remembering.threads = 1;
    remembering.known = &known;
    const std::map<std::string, std::int64_t> right{{".", 9}, {"a", 2}, {"a/b", 1}, {"c", 1}, {"wide", 5}};
    const std::size_t cases = test::tryEveryFault(
        {.operate =
             [&] {
                 known.forgetAll();
                 (void)walk(folder.path("a"), remembering);
                 (void)walk(folder.path(), remembering);
             },
         .check = [&](const FaultCase& fault) { expectWholeTotals(known, right, fault); }});
    RecordProperty("cases", static_cast<int>(cases));
}

TEST_P(WalkFaults, endsWithWhatCanBeReadWithoutADescriptorToSpare) {
    auto scarce = options();
    scarce.descriptorBudget = 0;
    tryEveryFault(scarce);
}

TEST_P(WalkFaults, endsWhenItIsCancelledWhileNoDescriptorIsToBeHad) {
    makeTree();
    const std::size_t before = openDescriptors();
    {
        const SystemCallFaults none(
            [](std::string_view name) { return name.starts_with("openat") ? EMFILE : 0; });
        WalkPool pool(clock, options());
        const SubmittedWalk walk = submit(pool, folder.path());
        walk.stop.request_stop();
        const auto end = walk.record->waitForEnd();
        ASSERT_TRUE(end);
        EXPECT_EQ(end->outcome, WalkOutcome::cancelled);
    }
    EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace vantrel::test
