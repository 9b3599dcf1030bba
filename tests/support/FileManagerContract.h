#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/FileManager.h"

namespace vantrel::test {

/// What every file manager keeps. `Subject` offers `FileManager& files()`, `std::string path(name)` below an
/// empty folder, `makeFile(name, content)`, `makeFolder(name)` and `makeLink(name, target)`, where `name` is
/// relative to that folder, and `auto failing(reason)` and `auto refusingToRead(name)`: while what they
/// answer lives, every call fails for that reason, or this user may not read what has that name.
template <class Subject>
class FileManagerContract : public testing::Test {
protected:
    using Entries = std::vector<DirectoryEntry>;

    FileManager& files() { return subject_.files(); }
    std::string path(const std::string& name) { return subject_.path(name); }
    Subject& subject() { return subject_; }

    Result<Entries> list(const std::string& name) {
        return files().contentsOfDirectory(path(name), [](std::string_view) { return true; });
    }

    std::vector<std::string> names(const std::string& name) {
        std::vector<std::string> all;
        const Result<Entries> entries = list(name);
        EXPECT_TRUE(entries) << name << ": " << entries.error().message();
        if (entries) {
            for (const DirectoryEntry& entry : entries.value()) all.push_back(entry.name);
        }
        std::ranges::sort(all);
        return all;
    }

    DirectoryEntry entry(const std::string& folder, const std::string& name) {
        const Result<Entries> entries = list(folder);
        if (entries) {
            for (const DirectoryEntry& found : entries.value()) {
                if (found.name == name) return found;
            }
        }
        ADD_FAILURE() << "no entry " << name;
        return {};
    }

    std::string contentOf(const std::string& name) {
        const Result<std::string> content = files().readPrefix(path(name), 1000);
        EXPECT_TRUE(content) << name << ": " << content.error().message();
        return content ? content.value() : "";
    }

    std::error_code copy(const std::string& from, const std::string& to) {
        return files().copyItem(path(from), path(to));
    }
    std::error_code move(const std::string& from, const std::string& to) {
        return files().moveItem(path(from), path(to));
    }
    std::error_code make(const std::string& name) { return files().createDirectory(path(name)); }
    std::error_code trash(const std::string& name) { return files().trashItem(path(name)); }

    /// "file", "other", and "tree" with a file, a folder with a file, and a link in it.
    void makeItems() {
        subject_.makeFile("file", "letter");
        subject_.makeFile("other", "another");
        subject_.makeFolder("tree");
        subject_.makeFile("tree/leaf", "green");
        subject_.makeFolder("tree/branch");
        subject_.makeFile("tree/branch/twig", "thin");
        subject_.makeLink("tree/link", "leaf");
    }

    void expectItems() {
        EXPECT_THAT(names(""), testing::ElementsAre("file", "other", "tree"));
        EXPECT_EQ(contentOf("file"), "letter");
        EXPECT_EQ(contentOf("other"), "another");
        expectTree("tree");
    }

    void expectTree(const std::string& name) {
        EXPECT_THAT(names(name), testing::ElementsAre("branch", "leaf", "link"));
        EXPECT_THAT(names(name + "/branch"), testing::ElementsAre("twig"));
        EXPECT_EQ(contentOf(name + "/leaf"), "green");
        EXPECT_EQ(contentOf(name + "/branch/twig"), "thin");
        const DirectoryEntry link = entry(name, "link");
        EXPECT_TRUE(link.attributes && link.attributes->link == LinkKind::symbolicLink);
    }

    using Operation = std::function<std::error_code(const std::string& from, const std::string& to)>;

    /// What copying and moving refuse alike.
    void expectRefusals(const Operation& operate) {
        makeItems();
        EXPECT_EQ(operate("missing", "new"), std::errc::no_such_file_or_directory);
        EXPECT_EQ(operate("missing/inner", "new"), std::errc::no_such_file_or_directory);
        EXPECT_EQ(operate("file", "missing/new"), std::errc::no_such_file_or_directory);
        EXPECT_EQ(operate("file/inner", "new"), std::errc::not_a_directory);
        EXPECT_EQ(operate("file", "other/new"), std::errc::not_a_directory);
        EXPECT_EQ(operate("file", "other"), std::errc::file_exists);
        EXPECT_EQ(operate("file", "file"), std::errc::file_exists);
        EXPECT_EQ(operate("file", "tree"), std::errc::file_exists);
        EXPECT_EQ(operate("file", "tree/link"), std::errc::file_exists);
        EXPECT_EQ(operate("tree", "file"), std::errc::file_exists);
        EXPECT_EQ(operate("tree", "tree"), std::errc::file_exists);
        EXPECT_EQ(operate("tree", "tree/inner"), std::errc::invalid_argument);
        EXPECT_EQ(operate("tree", "tree/branch/inner"), std::errc::invalid_argument);
        EXPECT_EQ(operate("file", std::string(256, 'n')), std::errc::filename_too_long);
        expectItems();
    }

    /// Whether every operation fails for that reason and leaves all as it was.
    void expectNothingHappens(std::errc reason) {
        const auto failing = subject_.failing(reason);
        EXPECT_EQ(list("tree").error(), reason);
        EXPECT_EQ(files().readPrefix(path("file"), 10).error(), reason);
        EXPECT_EQ(copy("file", "new"), reason);
        EXPECT_EQ(copy("tree", "new"), reason);
        EXPECT_EQ(move("file", "new"), reason);
        EXPECT_EQ(move("tree", "new"), reason);
        EXPECT_EQ(make("new"), reason);
        EXPECT_EQ(trash("file"), reason);
        EXPECT_EQ(files().targetOf(path("file")), PathTarget::missing);
        EXPECT_FALSE(files().isReadable(path("file")));
        EXPECT_FALSE(files().volumeCapacity(path("file")));
    }

private:
    Subject subject_;
};

TYPED_TEST_SUITE_P(FileManagerContract);

TYPED_TEST_P(FileManagerContract, aFolderListsAllItHoldsButNotItselfNorItsParent) {
    EXPECT_THAT(this->names(""), testing::IsEmpty());
    this->makeItems();
    this->subject().makeFile(".hidden", "");
    EXPECT_THAT(this->names(""), testing::ElementsAre(".hidden", "file", "other", "tree"));
}

TYPED_TEST_P(FileManagerContract, aListingHoldsTheEntriesWhoseNamesAreWanted) {
    this->makeItems();
    std::vector<std::string> asked;
    const auto entries = this->files().contentsOfDirectory(this->path(""), [&](std::string_view name) {
        asked.emplace_back(name);
        return name == "file";
    });
    EXPECT_THAT(asked, testing::UnorderedElementsAre("file", "other", "tree"));
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries.value().size(), 1U);
    EXPECT_EQ(entries.value().front().name, "file");
}

TYPED_TEST_P(FileManagerContract, anEntryTellsItsKindAndItsSize) {
    this->makeItems();
    const DirectoryEntry file = this->entry("", "file");
    EXPECT_EQ(file.target, PathTarget::file);
    ASSERT_TRUE(file.attributes);
    EXPECT_EQ(file.attributes->size, 6);
    EXPECT_EQ(file.attributes->link, LinkKind::notALink);
    const DirectoryEntry folder = this->entry("", "tree");
    EXPECT_EQ(folder.target, PathTarget::directory);
    ASSERT_TRUE(folder.attributes);
    EXPECT_EQ(folder.attributes->link, LinkKind::notALink);
}

TYPED_TEST_P(FileManagerContract, aLinkIsListedAsOneWithTheKindOfWhatItLeadsTo) {
    this->makeItems();
    this->subject().makeLink("toFolder", "tree");
    this->subject().makeLink("dangling", "missing");
    EXPECT_EQ(this->entry("tree", "link").target, PathTarget::file);
    EXPECT_EQ(this->entry("", "toFolder").target, PathTarget::directory);
    EXPECT_EQ(this->entry("", "dangling").target, PathTarget::missing);
    for (const char* name : {"toFolder", "dangling"}) {
        const DirectoryEntry entry = this->entry("", name);
        EXPECT_TRUE(entry.attributes && entry.attributes->link == LinkKind::symbolicLink) << name;
    }
}

TYPED_TEST_P(FileManagerContract, whatIsNoFolderIsNotListed) {
    this->makeItems();
    EXPECT_EQ(this->list("missing").error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(this->list("missing/inner").error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(this->list("file").error(), std::errc::not_a_directory);
    EXPECT_EQ(this->list("file/inner").error(), std::errc::not_a_directory);
}

TYPED_TEST_P(FileManagerContract, aPathSaysWhatStandsThere) {
    this->makeItems();
    const auto targetOf = [&](const std::string& name) { return this->files().targetOf(this->path(name)); };
    EXPECT_EQ(targetOf(""), PathTarget::directory);
    EXPECT_EQ(targetOf("tree"), PathTarget::directory);
    EXPECT_EQ(targetOf("tree/"), PathTarget::directory);
    EXPECT_EQ(targetOf("tree//branch/.."), PathTarget::directory);
    EXPECT_EQ(targetOf("tree/./leaf"), PathTarget::file);
    EXPECT_EQ(targetOf("tree/branch/../leaf"), PathTarget::file);
    EXPECT_EQ(targetOf("leaf"), PathTarget::missing);
    EXPECT_EQ(targetOf("file/"), PathTarget::missing);
    EXPECT_EQ(targetOf("file/.."), PathTarget::missing);
    EXPECT_EQ(targetOf("missing/.."), PathTarget::missing);
    EXPECT_EQ(this->files().targetOf(""), PathTarget::missing);
}

TYPED_TEST_P(FileManagerContract, whatThisUserMayNotReadSaysSo) {
    this->makeItems();
    EXPECT_TRUE(this->files().isReadable(this->path("tree")));
    EXPECT_TRUE(this->files().isReadable(this->path("file")));
    EXPECT_FALSE(this->files().isReadable(this->path("missing")));
    for (const char* name : {"tree", "file"}) {
        const auto refusing = this->subject().refusingToRead(name);
        EXPECT_FALSE(this->files().isReadable(this->path(name))) << name;
        EXPECT_NE(this->files().targetOf(this->path(name)), PathTarget::missing) << name;
    }
    {
        const auto refusing = this->subject().refusingToRead("tree");
        EXPECT_EQ(this->list("tree").error(), std::errc::permission_denied);
    }
    const auto refusing = this->subject().refusingToRead("file");
    EXPECT_EQ(this->files().readPrefix(this->path("file"), 10).error(), std::errc::permission_denied);
}

TYPED_TEST_P(FileManagerContract, whatIsThereLiesOnAVolumeWithACapacity) {
    this->makeItems();
    for (const char* name : {"", "file", "tree"}) {
        const auto capacity = this->files().volumeCapacity(this->path(name));
        ASSERT_TRUE(capacity) << name;
        EXPECT_LE(capacity->freeBytes, capacity->totalBytes);
    }
    EXPECT_FALSE(this->files().volumeCapacity(this->path("missing")));
    EXPECT_FALSE(this->files().volumeCapacity(this->path("file/inner")));
}

TYPED_TEST_P(FileManagerContract, aFilesBeginningIsReadUpToTheLimit) {
    this->makeItems();
    this->subject().makeFile("empty", "");
    const auto read = [&](const std::string& name, std::size_t limit) {
        return this->files().readPrefix(this->path(name), limit);
    };
    EXPECT_EQ(read("file", 3).value(), "let");
    EXPECT_EQ(read("file", 1000).value(), "letter");
    EXPECT_EQ(read("file", 0).value(), "");
    EXPECT_EQ(read("empty", 10).value(), "");
    EXPECT_EQ(read("missing", 10).error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(read("tree", 10).error(), std::errc::is_a_directory);
    EXPECT_EQ(read("file/inner", 10).error(), std::errc::not_a_directory);
}

TYPED_TEST_P(FileManagerContract, aFolderIsMadeWithThoseAboveItAndOneThatIsThereIsNoError) {
    EXPECT_EQ(this->make("new"), std::error_code());
    EXPECT_EQ(this->make("one/two/three"), std::error_code());
    EXPECT_EQ(this->make("one/two"), std::error_code());
    EXPECT_THAT(this->names(""), testing::ElementsAre("new", "one"));
    EXPECT_THAT(this->names("one/two"), testing::ElementsAre("three"));
    EXPECT_THAT(this->names("one/two/three"), testing::IsEmpty());
}

TYPED_TEST_P(FileManagerContract, aFolderIsNotMadeWhereItCannotStand) {
    this->makeItems();
    EXPECT_EQ(this->make("file"), std::errc::not_a_directory);
    EXPECT_EQ(this->make("file/inner"), std::errc::not_a_directory);
    EXPECT_EQ(this->make(std::string(256, 'n')), std::errc::filename_too_long);
    EXPECT_EQ(this->make("new/" + std::string(256, 'n')), std::errc::filename_too_long);
    EXPECT_EQ(this->files().createDirectory(""), std::errc::no_such_file_or_directory);
    this->expectItems();
}

TYPED_TEST_P(FileManagerContract, aCopyIsAsItsOriginalWhichStays) {
    this->makeItems();
    EXPECT_EQ(this->copy("file", "tree/copy"), std::error_code());
    EXPECT_EQ(this->contentOf("tree/copy"), "letter");
    EXPECT_EQ(this->trash("tree/copy"), std::error_code());
    this->expectItems();
    EXPECT_EQ(this->copy("tree", "copy"), std::error_code());
    this->expectTree("copy");
    EXPECT_EQ(this->trash("copy"), std::error_code());
    this->expectItems();
}

TYPED_TEST_P(FileManagerContract, aCopyAndItsOriginalChangeApart) {
    this->makeItems();
    EXPECT_EQ(this->copy("tree", "copy"), std::error_code());
    EXPECT_EQ(this->trash("tree/branch/twig"), std::error_code());
    EXPECT_EQ(this->make("tree/new"), std::error_code());
    this->expectTree("copy");
}

TYPED_TEST_P(FileManagerContract, aCopyThatCannotBeIsRefused) {
    this->expectRefusals([this](const auto& from, const auto& to) { return this->copy(from, to); });
}

TYPED_TEST_P(FileManagerContract, aMovedItemIsInItsNewPlaceOnly) {
    this->makeItems();
    EXPECT_EQ(this->move("file", "tree/moved"), std::error_code());
    EXPECT_EQ(this->contentOf("tree/moved"), "letter");
    EXPECT_THAT(this->names(""), testing::ElementsAre("other", "tree"));
    EXPECT_EQ(this->move("tree/moved", "file"), std::error_code());
    EXPECT_EQ(this->move("tree", "renamed"), std::error_code());
    EXPECT_THAT(this->names(""), testing::ElementsAre("file", "other", "renamed"));
    this->expectTree("renamed");
}

TYPED_TEST_P(FileManagerContract, aMoveThatCannotBeIsRefused) {
    this->expectRefusals([this](const auto& from, const auto& to) { return this->move(from, to); });
}

TYPED_TEST_P(FileManagerContract, whatGoesToTheTrashIsGoneFromItsPlaceWithAllThatItHolds) {
    this->makeItems();
    EXPECT_EQ(this->trash("tree"), std::error_code());
    EXPECT_EQ(this->trash("file"), std::error_code());
    EXPECT_THAT(this->names(""), testing::ElementsAre("other"));
}

TYPED_TEST_P(FileManagerContract, whatIsNotThereDoesNotGoToTheTrash) {
    this->makeItems();
    EXPECT_EQ(this->trash("missing"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(this->trash("file/inner"), std::errc::not_a_directory);
    EXPECT_EQ(this->files().trashItem("relative"), std::errc::invalid_argument);
    EXPECT_EQ(this->files().trashItem("/"), std::errc::invalid_argument);
    this->expectItems();
}

TYPED_TEST_P(FileManagerContract, whatTheSystemRefusesFailsForItsReasonAndChangesNothing) {
    this->makeItems();
    for (const std::errc reason :
         {std::errc::io_error, std::errc::permission_denied, std::errc::too_many_files_open,
          std::errc::no_such_file_or_directory, std::errc::no_space_on_device}) {
        this->expectNothingHappens(reason);
        this->expectItems();
    }
    EXPECT_EQ(this->copy("tree", "new"), std::error_code()) << "when the fault is over";
    this->expectTree("new");
}

REGISTER_TYPED_TEST_SUITE_P(FileManagerContract, aFolderListsAllItHoldsButNotItselfNorItsParent,
                            aListingHoldsTheEntriesWhoseNamesAreWanted, anEntryTellsItsKindAndItsSize,
                            aLinkIsListedAsOneWithTheKindOfWhatItLeadsTo, whatIsNoFolderIsNotListed,
                            aPathSaysWhatStandsThere, whatThisUserMayNotReadSaysSo,
                            whatIsThereLiesOnAVolumeWithACapacity, aFilesBeginningIsReadUpToTheLimit,
                            aFolderIsMadeWithThoseAboveItAndOneThatIsThereIsNoError,
                            aFolderIsNotMadeWhereItCannotStand, aCopyIsAsItsOriginalWhichStays,
                            aCopyAndItsOriginalChangeApart, aCopyThatCannotBeIsRefused,
                            aMovedItemIsInItsNewPlaceOnly, aMoveThatCannotBeIsRefused,
                            whatGoesToTheTrashIsGoneFromItsPlaceWithAllThatItHolds,
                            whatIsNotThereDoesNotGoToTheTrash,
                            whatTheSystemRefusesFailsForItsReasonAndChangesNothing);

}  // namespace vantrel::test
