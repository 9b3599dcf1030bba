#include "freedesktop/Launch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <string_view>

#include "base/PathLocation.h"
#include "base/SystemCall.h"

namespace vantrel::launching {

namespace {

bool isExecutableFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

/// All that a child needs, made before the fork: after it only async-signal-safe functions may run.
struct Plan {
    std::vector<char*> arguments;
    FileDescriptor folder;
    FileDescriptor nullDevice;
    FileDescriptor failureReader;
    FileDescriptor failureWriter;  ///< closed by a successful execve
};

Result<Plan> prepare(const std::vector<std::string>& arguments, const std::string& folder) {
    Plan plan;
    for (const std::string& argument : arguments)
        plan.arguments.push_back(
            const_cast<char*>(argument.c_str()));  // execv wants them so but modifies nothing
    plan.arguments.push_back(nullptr);
    if (!folder.empty()) {
        Result<FileDescriptor> opened = openToEnter(folder);
        if (!opened) return opened.error();
        plan.folder = std::move(*opened);
    }
    plan.nullDevice = FileDescriptor(::open("/dev/null", O_RDWR | O_CLOEXEC));
    if (!plan.nullDevice) return lastError();
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) return lastError();
    plan.failureReader = FileDescriptor(pipe[0]);
    plan.failureWriter = FileDescriptor(pipe[1]);
    return plan;
}

[[noreturn]] void reportAndExit(const Plan& plan) {
    const int error = errno;
    if (::write(plan.failureWriter.number(), &error, sizeof error) != sizeof error) ::_exit(126);
    ::_exit(127);
}

void takeDefaultSignals() {
    struct sigaction standard {};
    standard.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) ::sigaction(number, &standard, nullptr);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void becomeProgram(const Plan& plan) {
    if (plan.folder && ::fchdir(plan.folder.number()) != 0) reportAndExit(plan);
    for (const int standard : {0, 1, 2}) {
        if (::dup2(plan.nullDevice.number(), standard) < 0) reportAndExit(plan);
    }
    takeDefaultSignals();
    ::execv(plan.arguments.front(), plan.arguments.data());
    reportAndExit(plan);
}

/// The process in between, whose end leaves the program to init.
[[noreturn]] void becomeParentOfProgram(const Plan& plan) {
    ::setsid();
    const pid_t program = ::fork();
    if (program == 0) becomeProgram(plan);
    if (program < 0) reportAndExit(plan);
    ::_exit(0);
}

}  // namespace

std::optional<std::string> programOnPath(const std::string& name) {
    if (name.empty()) return std::nullopt;
    if (name.find('/') != std::string::npos)
        return name.starts_with('/') && isExecutableFile(name) ? std::optional(name) : std::nullopt;
    const char* const path = std::getenv("PATH");
    std::string_view folders = path == nullptr ? "/usr/local/bin:/usr/bin:/bin" : path;
    while (!folders.empty()) {
        const std::size_t colon = folders.find(':');
        const std::string_view folder = folders.substr(0, colon);
        folders.remove_prefix(colon == std::string_view::npos ? folders.size() : colon + 1);
        // Others, including the empty one, begin at the working directory, which may be anybody's.
        if (!folder.starts_with('/')) continue;
        std::string candidate(folder);
        candidate += '/' + name;
        if (isExecutableFile(candidate)) return candidate;
    }
    return std::nullopt;
}

Result<FileDescriptor> openToEnter(const std::string& folder) {
#ifdef O_PATH
    constexpr int access = O_PATH;
#else
    constexpr int access = O_SEARCH;
#endif
    return openPath(folder, access | O_DIRECTORY);
}

std::error_code launch(const std::vector<std::string>& arguments, const std::string& folder) {
    Result<Plan> plan = prepare(arguments, folder);
    if (!plan) return plan.error();
    const pid_t between = ::fork();
    if (between == 0) becomeParentOfProgram(*plan);
    if (between < 0) return lastError();
    plan->failureWriter.close();
    // So that it does not stay a zombie. How the start went comes through the pipe.
    (void)uninterrupted([&] { return ::waitpid(between, nullptr, 0); });
    int failure = 0;
    const ssize_t count =
        uninterrupted([&] { return ::read(plan->failureReader.number(), &failure, sizeof failure); });
    return count == sizeof failure ? std::error_code(failure, std::generic_category()) : std::error_code();
}

}  // namespace vantrel::launching
