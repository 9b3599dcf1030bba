#include "freedesktop/Launch.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "support/OwnNamespaces.h"
#include "support/TemporaryFolder.h"

namespace vantrel::launching {
namespace {

/// Waits until the started program has written all of its note there.
bool appears(const std::string& note) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (::access(note.c_str(), F_OK) != 0) {
        if (std::chrono::steady_clock::now() > limit) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

/// Starts a shell there, which notes where it is.
std::error_code startShellIn(const std::string& folder, const std::string& note) {
    return launch({"/bin/sh", "-c", "pwd -P > \"$0.part\" && mv \"$0.part\" \"$0\"", note}, folder);
}

class AFolderThatMayOnlyBeEntered : public testing::Test {
protected:
    /// Runs `body` as an ordinary user, whom the place's permissions hold back.
    void withPermissions(mode_t permissions, const std::function<void()>& body) {
        const auto prepare = [this, permissions] {
            place = folder.makeFolder("place");
            return ::chmod(place.c_str(), permissions) == 0;
        };
        test::inOwnNamespaces(folder, test::Privileges::none, prepare, body);
    }

    test::TemporaryFolder folder;
    std::string place;
};

TEST_F(AFolderThatMayOnlyBeEntered, isTheWorkingFolderOfAProgram) {
    withPermissions(0311, [this] {
        ASSERT_NE(::access(place.c_str(), R_OK), 0);
        const std::string note = folder.path("note");
        ASSERT_EQ(startShellIn(place, note), std::error_code());
        ASSERT_TRUE(appears(note));
        EXPECT_EQ(test::contentOf(note), place + "\n");
    });
}

TEST_F(AFolderThatMayOnlyBeEntered, isNotOneThatMayOnlyBeRead) {
    withPermissions(
        0600, [this] { EXPECT_EQ(startShellIn(place, folder.path("note")), std::errc::permission_denied); });
}

TEST(Launch, failsOnWhatIsNoFolder) {
    const test::TemporaryFolder folder;
    const std::string note = folder.path("note");
    EXPECT_EQ(startShellIn(folder.makeFile("file"), note), std::errc::not_a_directory);
    EXPECT_EQ(startShellIn(folder.path("missing"), note), std::errc::no_such_file_or_directory);
}

}  // namespace
}  // namespace vantrel::launching
