#include <sys/stat.h>

#include "posix/files/FileOperationsFixture.h"
#include "posix/files/PosixFileManager.h"
#include "support/SystemCallFaults.h"

// Everything that only reads the file system, with every one of its system calls failing in every way that
// its manual page allows: the answer is right, or says that there is none, and no descriptor stays open.

namespace vantrel {
namespace {

using test::FaultCase;
using test::SystemCallFaults;
using Entries = std::vector<DirectoryEntry>;

bool everyName(std::string_view) {
    return true;
}

class FaultyReading : public test::FileOperationsFixture {
protected:
    FaultyReading() : FileOperationsFixture(test::quickPlace()) {}

    /// `look` returns nothing when it fails.
    template <class Answer>
    void expectTheAnswerOrNone(const std::function<std::optional<Answer>()>& look) {
        const std::optional<Answer> right = look();
        ASSERT_TRUE(right);
        std::optional<Answer> answer;
        const std::size_t cases = test::tryEveryFault(
            {.operate = [&] { answer = look(); },
             .check = [&](const FaultCase& fault) { expectRight(fault, answer, *right); }});
        RecordProperty("cases", static_cast<int>(cases));
    }

    template <class Answer>
    static void expectRight(const FaultCase& fault, const std::optional<Answer>& answer,
                            const Answer& right) {
        // An interrupted call is made again, one that did only a part is carried on.
        if (fault.error == EINTR || fault.error == SystemCallFaults::givesLess || fault.call == "close") {
            EXPECT_TRUE(answer);
        }
        if (answer) {
            EXPECT_EQ(*answer, right);
        }
    }

    /// Deeper than one system call can reach.
    std::string deepFolder() { return folder.makeDeepFolder(45, std::string(100, 'd')); }

    PosixFileManager files;
};

void expectEntry(const DirectoryEntry& entry, const DirectoryEntry& right, const FaultCase& fault) {
    EXPECT_EQ(entry.name, right.name);
    if (!entry.attributes || entry.target != right.target) {
        EXPECT_EQ(entry.target, PathTarget::missing);
        EXPECT_EQ(fault.call, "fstatat");
        EXPECT_NE(fault.error, EINTR);
        return;
    }
    EXPECT_EQ(entry.target, right.target);
    ASSERT_TRUE(right.attributes);
    EXPECT_EQ(entry.attributes->size, right.attributes->size);
    EXPECT_EQ(entry.attributes->modificationDate, right.attributes->modificationDate);
    EXPECT_EQ(entry.attributes->link, right.attributes->link);
    EXPECT_EQ(entry.attributes->posixPermissions, right.attributes->posixPermissions);
}

TEST_F(FaultyReading, aListingIsCompleteButForEntriesThatCannotBeLookedAtOrFails) {
    const std::string tree = makeTree();
    Result<Entries> right = files.contentsOfDirectory(tree, everyName);
    ASSERT_TRUE(right);
    std::optional<Result<Entries>> listed;
    const std::size_t cases =
        test::tryEveryFault({.operate = [&] { listed = files.contentsOfDirectory(tree, everyName); },
                             .check =
                                 [&](const FaultCase& fault) {
                                     if (!*listed) {
                                         EXPECT_EQ(listed->error().value(), fault.error);
                                         EXPECT_NE(fault.error, EINTR);
                                         return;
                                     }
                                     ASSERT_EQ(listed->value().size(), right->size());
                                     int missing = 0;
                                     for (std::size_t index = 0; index < right->size(); ++index) {
                                         const DirectoryEntry& entry = listed->value()[index];
                                         expectEntry(entry, right.value()[index], fault);
                                         missing += entry.target != right.value()[index].target ? 1 : 0;
                                     }
                                     EXPECT_LE(missing, 1) << "one call failed";
                                 }});
    RecordProperty("cases", static_cast<int>(cases));
}

TEST_F(FaultyReading, theKindOfWhatStandsAtAPathIsRightOrMissing) {
    const std::string deep = deepFolder();
    expectTheAnswerOrNone<PathTarget>([&] {
        const PathTarget target = files.targetOf(deep);
        return target == PathTarget::missing ? std::nullopt : std::optional(target);
    });
}

TEST_F(FaultyReading, whetherAPathIsReadableIsRightOrNo) {
    const std::string deep = deepFolder();
    expectTheAnswerOrNone<bool>([&] { return files.isReadable(deep) ? std::optional(true) : std::nullopt; });
}

TEST_F(FaultyReading, theCapacityOfAVolumeIsRightOrUnknown) {
    const std::string deep = deepFolder();
    expectTheAnswerOrNone<std::int64_t>([&] {
        const auto capacity = files.volumeCapacity(deep);
        return capacity ? std::optional(capacity->totalBytes) : std::nullopt;
    });
}

TEST_F(FaultyReading, theBeginningOfAFileIsAllOfItOrAnError) {
    const std::string file = folder.makeFile("file", "the whole of the letter");
    expectTheAnswerOrNone<std::string>([&] {
        Result<std::string> content = files.readPrefix(file, 1000);
        return content ? std::optional(std::move(*content)) : std::nullopt;
    });
}

}  // namespace
}  // namespace vantrel
