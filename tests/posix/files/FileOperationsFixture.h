#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>

#include "posix/files/FileOperations.h"
#include "support/SystemCallFaults.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace vantrel::test {

/// Lets the n-th system call of an operation fail, counted from 0.
struct FailingCall {
    int number = -1;
    int error = EIO;
    bool andAllThatFollow = false;
    int made = 0;

    bool wasReached() const { return made > number; }
    SystemCallFaults::Plan plan() {
        return [this](std::string_view) {
            const int call = made++;
            return call == number || (andAllThatFollow && call > number) ? error : 0;
        };
    }
};

/// Lets the first `times` system calls of that name fail.
inline SystemCallFaults::Plan failing(std::string name, int error, int times = 1'000'000) {
    return [name = std::move(name), error, times](std::string_view call) mutable {
        return call == name && times-- > 0 ? error : 0;
    };
}

/// Does something just before the first system call of that name.
inline SystemCallFaults::Plan before(std::string name, std::function<void()> action) {
    return [name = std::move(name), action = std::move(action)](std::string_view call) mutable {
        if (call == name && action) std::exchange(action, nullptr)();
        return 0;
    };
}

/// The result of an operation whose system calls the plan decides about.
template <class Operation>
auto under(SystemCallFaults::Plan plan, Operation operation) {
    const SystemCallFaults faults(std::move(plan));
    return operation();
}

class FileOperationsFixture : public testing::Test {
protected:
    FileOperationsFixture() = default;
    explicit FileOperationsFixture(const std::string& place) : folder(place) {}

    /// A folder "tree" with one entry of each kind.
    std::string makeTree() const {
        folder.makeFolder("tree");
        folder.makeFile("tree/file", "content");
        folder.makeFile("tree/empty");
        folder.makeFile("tree/new\nline\xFF", "odd");
        folder.makeFolder("tree/inner");
        folder.makeFile("tree/inner/deep", std::string(10'000, 'd'));
        folder.makeFolder("tree/nothing");
        folder.makeLink("tree/link", "inner/deep");
        folder.makeLink("tree/dangling", "nowhere");
        folder.makeLink("tree/loop", "loop");
        folder.makeFifo("tree/fifo");
        return folder.path("tree");
    }

    /// The names in this test's folder, including anything hidden that an operation has left.
    std::vector<std::string> names() const { return namesIn(folder.path()); }

    std::error_code copyUnder(SystemCallFaults::Plan plan, const std::string& from, const std::string& to) {
        return under(std::move(plan), [&] { return operations.copyItem(from, to); });
    }
    std::error_code moveUnder(SystemCallFaults::Plan plan, const std::string& from, const std::string& to) {
        return under(std::move(plan), [&] { return operations.moveItem(from, to); });
    }

    FileOperations operations;
    TemporaryFolder folder;
};

}  // namespace vantrel::test
