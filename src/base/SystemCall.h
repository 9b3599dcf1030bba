#pragma once

#include <dirent.h>

#include <cerrno>
#include <system_error>

namespace vantrel {

/// Makes a system call, again whenever a signal interrupted it. `call` answers -1 with errno on failure. Not
/// for close(2), which must not be repeated.
template <class Call>
[[nodiscard]] auto uninterrupted(Call call) {
    for (;;) {
        const auto answer = call();
        if (answer != -1 || errno != EINTR) return answer;
    }
}

/// The reason for the last failed system call of this thread.
inline std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Makes a system call that gives nothing but success, again whenever a signal interrupted it.
template <class Call>
[[nodiscard]] std::error_code outcomeOf(Call call) {
    return uninterrupted(call) == 0 ? std::error_code() : lastError();
}

/// readdir(3), again whenever a signal interrupted it. Null with errno 0 at the end of the folder, null with
/// the reason in errno on failure.
inline const dirent* nextEntry(DIR* stream) {
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(stream);
        if (entry != nullptr || errno != EINTR) return entry;
    }
}

/// EMFILE or ENFILE: no descriptor is free in this process or on this system.
inline bool isDescriptorShortage(const std::error_code& error) {
    // Asked about every folder of a walk, so that success has to be told without comparing categories.
    return error &&
           (error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system);
}

}  // namespace vantrel
