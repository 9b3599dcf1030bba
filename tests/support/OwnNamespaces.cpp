#include "support/OwnNamespaces.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>

namespace vantrel::test {

namespace {

constexpr uid_t nobody = 65534;

enum class Verdict : int { passed, failed, notPermitted };

/// Where users may have namespaces, any of them may mount there; elsewhere root may.
enum class Way { usersNamespace, rootsMounts };

bool wrote(const char* file, const std::string& text) {
    std::ofstream stream(file);
    stream << text << std::flush;
    return static_cast<bool>(stream);
}

bool enterUsersNamespace() {
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && wrote("/proc/self/setgroups", "deny") &&
           wrote("/proc/self/uid_map", user + " " + user + " 1") &&
           wrote("/proc/self/gid_map", group + " " + group + " 1");
}

bool dropCapabilities() {
    __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    const std::array<__user_cap_data_struct, 2> none{};
    return ::syscall(SYS_capset, &header, none.data()) == 0;
}

bool enter(Way way) {
    const bool isInside = way == Way::usersNamespace ? becomeOrdinaryUser() && enterUsersNamespace()
                                                     : ::unshare(CLONE_NEWNS) == 0;
    return isInside && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool give(Way way, Privileges privileges) {
    if (privileges == Privileges::mounting) return true;
    return way == Way::usersNamespace ? dropCapabilities() : becomeOrdinaryUser();
}

Verdict runInChild(Way way, Privileges privileges, const std::function<bool()>& mount,
                   const std::function<void()>& body) {
    const pid_t child = ::fork();
    if (child < 0) return Verdict::failed;
    if (child == 0) {
        auto verdict = Verdict::notPermitted;
        if (enter(way) && mount() && give(way, privileges)) {
            body();
            verdict = testing::Test::HasFailure() ? Verdict::failed : Verdict::passed;
        }
        std::fflush(stdout);
        ::_exit(static_cast<int>(verdict));
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return Verdict::failed;
    return static_cast<Verdict>(WEXITSTATUS(status));
}

}  // namespace

void inOwnNamespaces(const TemporaryFolder& folder, Privileges privileges, const std::function<bool()>& mount,
                     const std::function<void()>& body) {
    const bool isRoot = ::geteuid() == 0;
    ASSERT_TRUE(!isRoot || ::chown(folder.path().c_str(), nobody, nobody) == 0);
    Verdict verdict = runInChild(Way::usersNamespace, privileges, mount, body);
    if (verdict == Verdict::notPermitted && isRoot)
        verdict = runInChild(Way::rootsMounts, privileges, mount, body);
    if (verdict == Verdict::notPermitted) GTEST_SKIP() << "this system does not let the test mount anything";
    EXPECT_EQ(static_cast<int>(verdict), static_cast<int>(Verdict::passed));
}

bool mountMemory(const std::string& where, const std::string& options) {
    return ::mount("tmpfs", where.c_str(), "tmpfs", 0, ("mode=1777," + options).c_str()) == 0;
}

bool becomeOrdinaryUser() {
    if (::geteuid() != 0) return true;
    return ::setgroups(0, nullptr) == 0 && ::setresgid(nobody, nobody, nobody) == 0 &&
           ::setresuid(nobody, nobody, nobody) == 0 && ::prctl(PR_SET_DUMPABLE, 1) == 0;
}

}  // namespace vantrel::test
