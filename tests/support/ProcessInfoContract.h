#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "base/Paths.h"
#include "platform/ProcessInfo.h"

namespace vantrel::test {

/// What everything keeps that speaks of this process. `Subject` offers `const ProcessInfo& process()`,
/// `std::string currentFolder()`, `void removeCurrentFolder()` and `std::string knownUser()`, somebody who
/// has a home folder.
template <class Subject>
class ProcessInfoContract : public testing::Test {
protected:
    const ProcessInfo& process() { return subject_.process(); }
    Subject& subject() { return subject_; }

private:
    Subject subject_;
};

TYPED_TEST_SUITE_P(ProcessInfoContract);

TYPED_TEST_P(ProcessInfoContract, theCurrentFolderIsTheRootWhenItIsGone) {
    EXPECT_EQ(this->process().currentDirectoryPath(), this->subject().currentFolder());
    this->subject().removeCurrentFolder();
    EXPECT_EQ(this->process().currentDirectoryPath(), "/");
}

TYPED_TEST_P(ProcessInfoContract, homesAreAbsoluteAndNobodyUnknownHasOne) {
    EXPECT_TRUE(this->process().homeDirectory().starts_with('/'));
    const std::optional<std::string> home = this->process().homeDirectoryOf(this->subject().knownUser());
    ASSERT_TRUE(home);
    EXPECT_TRUE(home->starts_with('/'));
    EXPECT_EQ(this->process().homeDirectoryOf("nobody of that name"), std::nullopt);
}

TYPED_TEST_P(ProcessInfoContract, theUserHasAName) {
    EXPECT_NE(this->process().userName(), "");
}

TYPED_TEST_P(ProcessInfoContract, aRelativePathCountsFromTheCurrentFolder) {
    const std::string current = this->subject().currentFolder();
    EXPECT_EQ(this->process().absolutePath("new"), current + "/new");
    EXPECT_EQ(this->process().absolutePath("./a/./b"), current + "/a/b");
    EXPECT_EQ(this->process().absolutePath("."), current);
    EXPECT_EQ(this->process().absolutePath(".."), paths::deletingLastComponent(current));
    EXPECT_EQ(this->process().absolutePath(""), "");
}

TYPED_TEST_P(ProcessInfoContract, anAbsolutePathStaysButForWhatNamesNothing) {
    EXPECT_EQ(this->process().absolutePath("/"), "/");
    EXPECT_EQ(this->process().absolutePath("/missing/a"), "/missing/a");
    EXPECT_EQ(this->process().absolutePath("/missing/./a"), "/missing/a");
}

TYPED_TEST_P(ProcessInfoContract, aRelativePathNamesNothingWhenTheCurrentFolderIsGone) {
    this->subject().removeCurrentFolder();
    EXPECT_EQ(this->process().absolutePath("new"), "");
    EXPECT_EQ(this->process().absolutePath("."), "");
    EXPECT_EQ(this->process().absolutePath("/new"), "/new");
}

REGISTER_TYPED_TEST_SUITE_P(ProcessInfoContract, theCurrentFolderIsTheRootWhenItIsGone,
                            homesAreAbsoluteAndNobodyUnknownHasOne, theUserHasAName,
                            aRelativePathCountsFromTheCurrentFolder,
                            anAbsolutePathStaysButForWhatNamesNothing,
                            aRelativePathNamesNothingWhenTheCurrentFolderIsGone);

}  // namespace vantrel::test
