#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include "base/SystemCall.h"

namespace vantrel {

/// The gate that the file operations make every system call through, so that a test can let any of them fail
/// or act between two of them. Calls are repeated when a signal interrupts them.
class SystemCalls {
public:
    /// Asked with the call's name before each one; answers the errno that it fails with, 0 to let it be made.
    using Fault = std::function<int(std::string_view name)>;

    SystemCalls() = default;
    explicit SystemCalls(Fault fault) : fault_(std::move(fault)) {}

    /// `call` answers -1 with errno on failure, and so does this.
    template <class Call>
    auto operator()(std::string_view name, Call call) const {
        return uninterrupted([&]() -> decltype(call()) {
            if (const int error = fault_ ? fault_(name) : 0; error != 0) {
                errno = error;
                return -1;
            }
            return call();
        });
    }

private:
    Fault fault_;
};

}  // namespace vantrel
