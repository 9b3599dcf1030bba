#include "support/SystemCallFaults.h"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <mutex>
#include <system_error>

namespace vantrel::test {

namespace {

std::atomic<bool> isActive{false};
std::mutex planLock;
SystemCallFaults::Plan thePlan;

/// What a plan itself calls is made as it is.
thread_local bool isAsking = false;

int answerFor(std::string_view name) {
    if (!isActive.load() || isAsking) return 0;
    const std::lock_guard lock(planLock);
    isAsking = true;
    const int answer = thePlan ? thePlan(name) : 0;
    isAsking = false;
    return answer;
}

/// Whether the call fails; errno is set then.
bool fails(std::string_view name) {
    const int answer = answerFor(name);
    if (answer > 0) errno = answer;
    return answer > 0;
}

/// How much of `wanted` a call may do, 0 when it fails.
std::size_t allowed(std::string_view name, std::size_t wanted, std::size_t least = 1) {
    const int answer = answerFor(name);
    if (answer > 0) errno = answer;
    if (answer > 0) return 0;
    return answer == SystemCallFaults::givesLess && wanted > least ? least : wanted;
}

}  // namespace

SystemCallFaults::SystemCallFaults(Plan plan) {
    const std::lock_guard lock(planLock);
    thePlan = std::move(plan);
    isActive = true;
}

SystemCallFaults::~SystemCallFaults() {
    isActive = false;
    const std::lock_guard lock(planLock);
    thePlan = nullptr;
}

}  // namespace vantrel::test

using vantrel::test::allowed;
using vantrel::test::fails;

// NOLINTBEGIN(bugprone-reserved-identifier): the linker gives these names.

/// A call with a fixed list of arguments, which answers `failure` when it fails.
#define VANTREL_CALL(type, name, failure, parameters, arguments)   \
    extern "C" type __real_##name parameters;                      \
    extern "C" type __wrap_##name parameters {                     \
        return fails(#name) ? (failure) : __real_##name arguments; \
    }

/// A call that may do a part of `size` only.
#define VANTREL_PARTIAL_CALL(name, least, parameters, arguments)           \
    extern "C" ssize_t __real_##name parameters;                           \
    extern "C" ssize_t __wrap_##name parameters {                          \
        if (size == 0) return fails(#name) ? -1 : __real_##name arguments; \
        size = allowed(#name, size, least);                                \
        return size == 0 ? -1 : __real_##name arguments;                   \
    }

VANTREL_CALL(int, fstat, -1, (int file, struct stat* status), (file, status))
VANTREL_CALL(int, fstatat, -1, (int folder, const char* path, struct stat* status, int flags),
             (folder, path, status, flags))
VANTREL_CALL(int, statx, -1, (int folder, const char* path, int flags, unsigned mask, struct statx* status),
             (folder, path, flags, mask, status))
VANTREL_CALL(int, fstatfs, -1, (int file, struct statfs* status), (file, status))
VANTREL_CALL(int, fstatvfs, -1, (int file, struct statvfs* status), (file, status))
VANTREL_CALL(int, faccessat, -1, (int folder, const char* path, int mode, int flags),
             (folder, path, mode, flags))
VANTREL_CALL(int, fchdir, -1, (int folder), (folder))
VANTREL_CALL(int, unshare, -1, (int flags), (flags))
VANTREL_CALL(int, mkdirat, -1, (int folder, const char* path, mode_t mode), (folder, path, mode))
VANTREL_CALL(int, mknodat, -1, (int folder, const char* path, mode_t mode, dev_t device),
             (folder, path, mode, device))
VANTREL_CALL(int, unlinkat, -1, (int folder, const char* path, int flags), (folder, path, flags))
VANTREL_CALL(int, linkat, -1, (int folder, const char* path, int newFolder, const char* newPath, int flags),
             (folder, path, newFolder, newPath, flags))
VANTREL_CALL(int, symlinkat, -1, (const char* target, int folder, const char* path), (target, folder, path))
VANTREL_CALL(ssize_t, readlinkat, -1, (int folder, const char* path, char* text, std::size_t size),
             (folder, path, text, size))
VANTREL_CALL(int, renameat, -1, (int folder, const char* path, int newFolder, const char* newPath),
             (folder, path, newFolder, newPath))
VANTREL_CALL(int, renameat2, -1,
             (int folder, const char* path, int newFolder, const char* newPath, unsigned flags),
             (folder, path, newFolder, newPath, flags))
VANTREL_CALL(int, fchmod, -1, (int file, mode_t mode), (file, mode))
VANTREL_CALL(int, fchmodat, -1, (int folder, const char* path, mode_t mode, int flags),
             (folder, path, mode, flags))
VANTREL_CALL(int, fchown, -1, (int file, uid_t user, gid_t group), (file, user, group))
VANTREL_CALL(int, fchownat, -1, (int folder, const char* path, uid_t user, gid_t group, int flags),
             (folder, path, user, group, flags))
VANTREL_CALL(int, futimens, -1, (int file, const struct timespec* times), (file, times))
VANTREL_CALL(int, utimensat, -1, (int folder, const char* path, const struct timespec* times, int flags),
             (folder, path, times, flags))
VANTREL_CALL(int, ftruncate, -1, (int file, off_t size), (file, size))
VANTREL_CALL(int, syncfs, -1, (int file), (file))
VANTREL_CALL(int, fsync, -1, (int file), (file))
VANTREL_CALL(int, flock, -1, (int file, int operation), (file, operation))
VANTREL_CALL(int, sync_file_range, -1, (int file, off_t offset, off_t size, unsigned flags),
             (file, offset, size, flags))
VANTREL_CALL(int, fremovexattr, -1, (int file, const char* name), (file, name))
VANTREL_CALL(off_t, lseek, -1, (int file, off_t offset, int whence), (file, offset, whence))
VANTREL_CALL(ssize_t, flistxattr, -1, (int file, char* names, std::size_t size), (file, names, size))
VANTREL_CALL(ssize_t, fgetxattr, -1, (int file, const char* name, void* value, std::size_t size),
             (file, name, value, size))
VANTREL_CALL(int, fsetxattr, -1, (int file, const char* name, const void* value, std::size_t size, int flags),
             (file, name, value, size, flags))
VANTREL_CALL(DIR*, fdopendir, nullptr, (int folder), (folder))
VANTREL_CALL(struct dirent*, readdir, nullptr, (DIR * stream), (stream))
VANTREL_CALL(int, getpwuid_r, errno,
             (uid_t user, struct passwd* record, char* texts, std::size_t size, struct passwd** found),
             (user, record, texts, size, found))
VANTREL_CALL(char*, realpath, nullptr, (const char* path, char* resolved), (path, resolved))

VANTREL_PARTIAL_CALL(pread, 1, (int file, void* data, std::size_t size, off_t offset),
                     (file, data, size, offset))
VANTREL_PARTIAL_CALL(pwrite, 1, (int file, const void* data, std::size_t size, off_t offset),
                     (file, data, size, offset))
VANTREL_PARTIAL_CALL(write, 1, (int file, const void* data, std::size_t size), (file, data, size))
VANTREL_PARTIAL_CALL(copy_file_range, 1,
                     (int from, off_t* fromOffset, int to, off_t* toOffset, std::size_t size, unsigned flags),
                     (from, fromOffset, to, toOffset, size, flags))
// Room for one entry of the longest name.
VANTREL_PARTIAL_CALL(getdents64, 280, (int folder, void* records, std::size_t size), (folder, records, size))

extern "C" int __real_close(int file);
extern "C" int __wrap_close(int file) {
    if (!fails("close")) return __real_close(file);
    const int error = errno;
    __real_close(file);
    errno = error;
    return -1;
}

extern "C" int __real_openat(int folder, const char* path, int flags, mode_t mode);
extern "C" int __wrap_openat(int folder, const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return fails("openat") ? -1 : __real_openat(folder, path, flags, mode);
}

// What a hardened build makes of an openat whose flags the compiler does not know.
extern "C" int __real___openat_2(int folder, const char* path, int flags);
extern "C" int __wrap___openat_2(int folder, const char* path, int flags) {
    return fails("openat") ? -1 : __real___openat_2(folder, path, flags);
}

extern "C" int __real_fcntl(int file, int command, long argument);
extern "C" int __wrap_fcntl(int file, int command, ...) {
    va_list rest;
    va_start(rest, command);
    const long argument = va_arg(rest, long);
    va_end(rest);
    if (command == F_DUPFD_CLOEXEC && fails("fcntl")) return -1;
    const bool isAboutALease = command == F_SETLEASE || command == F_GETLEASE || command == F_SETSIG;
    return isAboutALease && fails("lease") ? -1 : __real_fcntl(file, command, argument);
}

extern "C" int __real_ioctl(int file, unsigned long command, long argument);
extern "C" int __wrap_ioctl(int file, unsigned long command, ...) {
    va_list rest;
    va_start(rest, command);
    const long argument = va_arg(rest, long);
    va_end(rest);
    return fails("ioctl") ? -1 : __real_ioctl(file, command, argument);
}

extern "C" long __real_syscall(long number, long, long, long, long, long, long);
extern "C" long __wrap_syscall(long number, ...) {
    va_list rest;
    va_start(rest, number);
    long arguments[6];
    for (long& argument : arguments) argument = va_arg(rest, long);
    va_end(rest);
    if (number == SYS_openat2 && fails("openat2")) return -1;
    return __real_syscall(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4],
                          arguments[5]);
}

// What std::thread calls to start its thread, in the C++ library's binary interface.
#define VANTREL_START_THREAD \
    _ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE
#define VANTREL_JOINED(a, b) a##b
#define VANTREL_NAMED(prefix, name) VANTREL_JOINED(prefix, name)
extern "C" void VANTREL_NAMED(__real_, VANTREL_START_THREAD)(void* thread, void* state, void (*unused)());
extern "C" void VANTREL_NAMED(__wrap_, VANTREL_START_THREAD)(void* thread, void* state, void (*unused)()) {
    if (fails("pthread_create")) throw std::system_error(errno, std::generic_category());
    VANTREL_NAMED(__real_, VANTREL_START_THREAD)(thread, state, unused);
}

// NOLINTEND(bugprone-reserved-identifier)
