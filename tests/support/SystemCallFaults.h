#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel::test {

/// While it lives, decides for every system call that the linked-in code makes, on any thread, what becomes
/// of it. The linker leads the calls here (`--wrap`, see tests/CMakeLists.txt), so the program itself knows
/// nothing of it. One at a time.
class SystemCallFaults {
public:
    /// Answers the errno that the call fails with, 0 to let it be made, `givesLess` to let a call that reads
    /// or writes do a part of it only. A failing close(2) closes all the same, as the real one does. What the
    /// plan calls itself, to act between two calls like another program, it is not asked about.
    using Plan = std::function<int(std::string_view name)>;
    static constexpr int givesLess = -1;

    explicit SystemCallFaults(Plan plan);
    SystemCallFaults(const SystemCallFaults&) = delete;
    SystemCallFaults& operator=(const SystemCallFaults&) = delete;
    ~SystemCallFaults();
};

/// One system call of an operation, counted from 0, and what it answers instead.
struct FaultCase {
    std::size_t number = 0;
    std::string call;
    int error = 0;

    /// Fails that call and no other.
    SystemCallFaults::Plan once() const;
    /// Fails that call and every one after it that may fail so.
    SystemCallFaults::Plan fromThereOn() const;

    std::string description() const;
};

/// The errors that the call's manual page names, and those that file systems answer beside them (EIO, ESTALE,
/// EINTR); `givesLess` for what may do a part only. Without those that only a faulty program sees (EBADF,
/// EFAULT).
const std::vector<int>& errorsOf(std::string_view call);

/// An operation to be tried with every fault.
struct FaultTrial {
    std::function<void()> prepare = [] {};
    std::function<void()> operate;
    std::function<void(const FaultCase& fault)> check;  ///< after each run
    /// What becomes of the calls that do not fail, asked anew for each run; by default they are made.
    std::function<SystemCallFaults::Plan()> circumstances = [] { return SystemCallFaults::Plan(); };
};

/// Runs the operation once as it is, to see its system calls, and then once for every error of every one of
/// them. Expects that no run leaves a descriptor open. Answers the number of cases.
std::size_t tryEveryFault(const FaultTrial& trial);

}  // namespace vantrel::test
