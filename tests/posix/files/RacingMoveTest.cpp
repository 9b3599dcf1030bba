#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <optional>
#include <random>
#include <thread>

#include "base/FileDescriptor.h"
#include "posix/files/FileOperations.h"
#include "support/LongTests.h"
#include "support/SystemCallFaults.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

// Another program works in a tree while it is moved to another file system: whatever it does between any two
// system calls of the move is afterwards in the source or in the target.

namespace vantrel {
namespace {

namespace fs = std::filesystem;
using test::SystemCallFaults;
using test::TemporaryFolder;

constexpr std::string_view oldText = "the old version";
constexpr std::string_view newText = "the new version";  // of the same length

/// Writes into an open file without changing its size or, in the end, its date.
bool rewrite(int file, std::string_view text) {
    struct stat status {};
    if (::fstat(file, &status) != 0) return false;
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    return ::pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()) &&
           ::futimens(file, times.data()) == 0;
}

/// A move may hold off writers, and the thread that makes the move must not wait for itself.
FileDescriptor openNow(int folder, const std::string& path, int flags) {
    return FileDescriptor(::openat(folder, path.c_str(), flags | O_NONBLOCK | O_CLOEXEC, 0644));
}

bool makeNew(int folder, const std::string& path) {
    const FileDescriptor file = openNow(folder, path, O_WRONLY | O_CREAT | O_EXCL);
    return file && ::write(file.number(), newText.data(), newText.size()) > 0;
}

/// All contents of ordinary files that stand somewhere in sight.
std::vector<std::string> visibleContents(const std::string& folder) {
    std::vector<std::string> contents;
    for (auto entry = fs::recursive_directory_iterator(folder); entry != fs::recursive_directory_iterator();
         ++entry) {
        if (entry->path().filename().string().starts_with(".vantrel-")) {
            entry.disable_recursion_pending();
        } else if (entry->symlink_status().type() == fs::file_type::regular) {
            contents.push_back(test::contentOf(entry->path()));
        }
    }
    return contents;
}

class RacingMove : public testing::Test {
protected:
    /// What another program has prepared before the move and does during it. False when it could not.
    using Change = std::function<bool()>;

    RacingMove() : folder(test::quickPlace()) {}
    ~RacingMove() override { RecordProperty("cases", cases); }

    std::string path(const std::string& name) const { return work->path(name); }

    void makeTree() {
        work.emplace(folder.path());
        work->makeFolder("tree");
        work->makeFile("tree/first", "first");
        work->makeFile("tree/file", oldText);
        work->makeFolder("tree/inner");
        work->makeFile("tree/inner/deep", oldText);
        work->makeFile("tree/last", "last");
        work->makeLink("tree/link", "file");
    }

    /// Moves `name` to "moved" with the change made before the n-th call, for every n. `prepare` runs before
    /// each move and returns the change.
    void moveWhile(const std::string& name, const std::function<Change()>& prepare,
                   const std::function<void(bool isMoved)>& check) {
        for (int number = 0;; ++number, ++cases) {
            SCOPED_TRACE("before call " + std::to_string(number));
            makeTree();
            Change change = prepare();
            int made = 0, renames = 0;
            bool isChanged = false;
            std::string before;
            std::error_code error;
            {
                const SystemCallFaults plan([&](std::string_view call) {
                    if (made++ == number) isChanged = change();
                    if (made - 1 == number) before = call;
                    return call == "renameat2" && renames++ == 0 ? EXDEV : 0;
                });
                error = FileOperations().moveItem(path(name), path("moved"));
            }
            change = nullptr;
            SCOPED_TRACE(before + (error ? ": " + error.message() : ": moved"));
            if (made <= number) break;
            for (const std::string& seen : test::namesIn(work->path()))
                EXPECT_FALSE(seen.starts_with(".vantrel-")) << seen;
            if (isChanged) check(!error);
            if (HasFailure()) break;
        }
    }

    void expectNewTextIn(const std::string& what) const {
        EXPECT_THAT(visibleContents(work->path()), testing::Contains(newText)) << what;
    }

    /// Tries the change on a file in a folder and on a file that is moved by itself.
    void expectKept(const std::function<Change(const std::string& file)>& prepare) {
        for (const char* const file : {"tree/file", "tree/inner/deep"}) {
            moveWhile(
                "tree", [&] { return prepare(path(file)); }, [&](bool) { expectNewTextIn(file); });
        }
        moveWhile(
            "tree/file", [&] { return prepare(path("tree/file")); },
            [&](bool) { expectNewTextIn("a file by itself"); });
    }

    int cases = 0;
    TemporaryFolder folder;
    std::optional<TemporaryFolder> work;
};

TEST_F(RacingMove, keepsANewFile) {
    for (const char* const name : {"tree/new", "tree/inner/new"}) {
        moveWhile(
            "tree", [&] { return [this, name] { return makeNew(AT_FDCWD, path(name)); }; },
            [&](bool) { expectNewTextIn(name); });
    }
}

TEST_F(RacingMove, keepsAFileRewrittenInPlaceWithTheSameSizeAndDate) {
    expectKept([](const std::string& file) {
        return [file] {
            const FileDescriptor opened = openNow(AT_FDCWD, file, O_WRONLY);
            return opened && rewrite(opened.number(), newText);
        };
    });
}

TEST_F(RacingMove, keepsANewVersionRenamedOverTheOldOne) {
    expectKept([](const std::string& file) {
        return [file] {
            const std::string draft = file + ".draft";
            return makeNew(AT_FDCWD, draft) && ::rename(draft.c_str(), file.c_str()) == 0;
        };
    });
}

TEST_F(RacingMove, keepsWhatAProgramWritesThatHasTheFileOpen) {
    expectKept([](const std::string& file) {
        auto opened = std::make_shared<FileDescriptor>(openNow(AT_FDCWD, file, O_WRONLY));
        return [opened] { return rewrite(opened->number(), newText); };
    });
}

TEST_F(RacingMove, keepsWhatAProgramWritesThatHasTheFileMapped) {
    expectKept([](const std::string& file) {
        const FileDescriptor opened = openNow(AT_FDCWD, file, O_RDWR);
        void* const memory =
            ::mmap(nullptr, oldText.size(), PROT_READ | PROT_WRITE, MAP_SHARED, opened.number(), 0);
        EXPECT_NE(memory, MAP_FAILED);
        static_cast<char*>(memory)[0] = 't';  // so that the page is writable from now on
        const std::shared_ptr<void> map(memory, [](void* mapped) { ::munmap(mapped, oldText.size()); });
        return [map] {
            newText.copy(static_cast<char*>(map.get()), newText.size());
            return true;
        };
    });
}

TEST_F(RacingMove, keepsWhatAProgramDoesWhoseWorkingFolderIsInside) {
    for (const bool replaces : {false, true}) {
        moveWhile(
            "tree",
            [&] {
                auto inside = std::make_shared<FileDescriptor>(openNow(AT_FDCWD, path("tree/inner"), O_PATH));
                return [inside, replaces] {
                    return makeNew(inside->number(), "new") &&
                           (!replaces || ::renameat(inside->number(), "new", inside->number(), "deep") == 0);
                };
            },
            [&](bool) { expectNewTextIn("the working folder"); });
    }
}

TEST_F(RacingMove, keepsAFileThatIsGivenAnotherName) {
    for (const char* const name : {"tree/renamed", "renamed", "tree/inner/renamed"}) {
        moveWhile(
            "tree",
            [&] {
                return [this, name] { return ::rename(path("tree/file").c_str(), path(name).c_str()) == 0; };
            },
            [&](bool) {
                EXPECT_THAT(visibleContents(work->path()), testing::Contains(oldText).Times(testing::Ge(2)))
                    << name;
            });
    }
}

TEST_F(RacingMove, keepsAnOriginalThatIsGivenAnotherName) {
    for (const char* const name : {"tree", "tree/inner", "tree/file"}) {
        moveWhile(
            name,
            [&] {
                return [this, name] { return ::rename(path(name).c_str(), path("elsewhere").c_str()) == 0; };
            },
            [&](bool) { EXPECT_THAT(visibleContents(work->path()), testing::Contains(oldText)); });
    }
}

TEST_F(RacingMove, keepsPermissionsThatAreChanged) {
    for (const char* const name : {"tree", "tree/file"}) {
        moveWhile(
            name, [&] { return [this, name] { return ::chmod(path(name).c_str(), 0750) == 0; }; },
            [&](bool isMoved) {
                struct stat status {};
                ASSERT_EQ(::stat(path(isMoved ? "moved" : name).c_str(), &status), 0);
                EXPECT_EQ(status.st_mode & 07777u, 0750u);
            });
    }
}

TEST_F(RacingMove, keepsATreeThatIsMadeAnewInTheOldPlace) {
    moveWhile(
        "tree",
        [&] {
            return [this] {
                ::mkdir(path("tree").c_str(), 0755);
                return makeNew(AT_FDCWD, path("tree/new"));
            };
        },
        [&](bool) {
            expectNewTextIn("the old place");
            EXPECT_THAT(visibleContents(work->path()), testing::Contains("last"));
        });
}

TEST_F(RacingMove, keepsWhatIsDoneToTheCopyAsSoonAsItIsSeen) {
    const auto breakMove = [this](const Change& change) {
        return [this, change] {
            if (!change()) return false;
            makeNew(AT_FDCWD, path("tree/late"));  // the move fails unless the original is gone by now
            return true;
        };
    };
    moveWhile(
        "tree", [&] { return breakMove([this] { return makeNew(AT_FDCWD, path("moved/new")); }); },
        [&](bool) { expectNewTextIn("the target"); });
    moveWhile(
        "tree",
        [&] {
            return breakMove([this] {
                const FileDescriptor opened = openNow(AT_FDCWD, path("moved/file"), O_WRONLY);
                return opened && rewrite(opened.number(), newText);
            });
        },
        [&](bool) { expectNewTextIn("a file of the target"); });
}

/// Saves new versions of a few documents in every way that programs do, until it is destroyed.
class Author {
public:
    static constexpr int documents = 4;

    explicit Author(const std::string& tree)
        : tree_(tree), thread_([this](const std::stop_token& stop) {
              while (!stop.stop_requested()) {
                  const std::lock_guard lock(atWork);
                  save(static_cast<int>(random_() % documents));
              }
          }) {}

    static std::string text(int document, int version) {
        std::string number = std::to_string(version);
        return "document " + std::to_string(document) + " version " +
               number.insert(0, 8 - number.size(), '0');
    }

    std::mutex atWork;
    std::array<int, documents> saved{};  ///< the last version of each, under the lock

private:
    void save(int document) {
        const std::string path = tree_ + "/inner/" + std::to_string(document);
        const std::string content = text(document, saved[static_cast<std::size_t>(document)] + 1);
        const bool isDraft = random_() % 2 == 0;
        const std::string place = isDraft ? path + ".draft" : path;
        const int flags = isDraft ? O_WRONLY | O_CREAT | O_TRUNC : O_WRONLY;
        FileDescriptor file(::open(place.c_str(), flags | O_CLOEXEC, 0644));
        if (!file) return;
        if (random_() % 2 == 0) std::this_thread::yield();
        if (::pwrite(file.number(), content.data(), content.size(), 0) < 0) return;
        if (random_() % 2 == 0) file.close();
        if (isDraft && ::rename(place.c_str(), path.c_str()) != 0) return;
        ++saved[static_cast<std::size_t>(document)];
    }

    std::string tree_;
    std::minstd_rand random_{4711};
    std::jthread thread_;
};

TEST_F(RacingMove, losesNoVersionOfADocumentThatIsSavedAllTheTime) {
    const int rounds = test::byPatience(60, 1000);
    std::minstd_rand random{20261121};
    int moved = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        makeTree();
        for (int document = 0; document < Author::documents; ++document)
            work->makeFile("tree/inner/" + std::to_string(document), Author::text(document, 0));
        Author author(path("tree"));
        std::error_code error = std::make_error_code(std::errc::device_or_resource_busy);
        for (int attempt = 0; attempt < 3 && error; ++attempt) {
            const unsigned slow = random() % 120;
            unsigned made = 0, renames = 0;
            const SystemCallFaults plan([&](std::string_view call) {
                if (made++ == slow) std::this_thread::sleep_for(std::chrono::milliseconds(3));
                return call == "renameat2" && renames++ == 0 ? EXDEV : 0;
            });
            error = FileOperations().moveItem(path("tree"), path("moved"));
        }
        if (!error) ++moved;
        const std::lock_guard lock(author.atWork);
        const auto contents = visibleContents(work->path());
        for (int document = 0; document < Author::documents; ++document) {
            EXPECT_THAT(contents, testing::Contains(Author::text(
                                      document, author.saved[static_cast<std::size_t>(document)])));
        }
    }
    cases = rounds;
    RecordProperty("moved", moved);
}

}  // namespace
}  // namespace vantrel
