#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <utility>

#include "support/SystemCallFaults.h"
#include "support/TemporaryFolder.h"

namespace vantrel::test {

namespace {

using Errors = std::vector<int>;

/// What may happen to every call that looks at a disk or asks a server.
const Errors everywhere{EIO, ESTALE, EINTR, ENOMEM};

/// What may happen to every call that looks up a name.
const Errors onTheWay{EACCES, ELOOP, ENAMETOOLONG, ENOENT, ENOTDIR};

/// What may happen to every call that changes a folder.
const Errors onChange{EDQUOT, ENOSPC, EPERM, EROFS};

constexpr int less = SystemCallFaults::givesLess;

Errors sum(std::initializer_list<Errors> parts) {
    Errors all;
    for (const Errors& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

const std::map<std::string_view, Errors>& table() {
    static const std::map<std::string_view, Errors> errors{
        {"openat", sum({everywhere,
                        onTheWay,
                        onChange,
                        {EMFILE, ENFILE, EBUSY, EEXIST, EISDIR, ENODEV, ENXIO, EOVERFLOW, ETXTBSY, EAGAIN}})},
        {"openat2",
         sum({everywhere, onTheWay, {EPERM, EMFILE, ENFILE, EAGAIN, EXDEV, ENOSYS, E2BIG, ENODEV}})},
        {"close", {EIO, EINTR, ENOSPC, EDQUOT}},
        {"fstat", sum({everywhere, {EOVERFLOW}})},
        {"fstatat", sum({everywhere, onTheWay, {EOVERFLOW}})},
        {"statx", sum({everywhere, onTheWay, {ENOSYS}})},
        {"fstatfs", sum({everywhere, {ENOSYS, EOVERFLOW}})},
        {"fstatvfs", sum({everywhere, {ENOSYS, EOVERFLOW}})},
        {"faccessat", sum({everywhere, onTheWay, {EPERM, EROFS, ETXTBSY}})},
        {"fchdir", sum({everywhere, {EACCES, ENOTDIR}})},
        {"unshare", {EPERM, ENOMEM, ENOSPC, EINVAL}},
        {"mkdirat", sum({everywhere, onTheWay, onChange, {EEXIST, EMLINK, EINVAL}})},
        {"mknodat", sum({everywhere, onTheWay, onChange, {EEXIST, EINVAL}})},
        {"unlinkat", sum({everywhere, onTheWay, {EPERM, EROFS, EBUSY, EISDIR, ENOTEMPTY, EINVAL}})},
        {"linkat", sum({everywhere, onTheWay, onChange, {EEXIST, EMLINK, EXDEV}})},
        {"symlinkat", sum({everywhere, onTheWay, onChange, {EEXIST}})},
        {"readlinkat", sum({everywhere, onTheWay, {EINVAL}})},
        {"renameat",
         sum({everywhere, onTheWay, onChange, {EBUSY, EINVAL, EISDIR, EMLINK, ENOTEMPTY, EXDEV}})},
        {"renameat2", sum({everywhere,
                           onTheWay,
                           onChange,
                           {EBUSY, EEXIST, EINVAL, EISDIR, EMLINK, ENOTEMPTY, EXDEV, ENOSYS, EOPNOTSUPP}})},
        {"fchmod", sum({everywhere, {EPERM, EROFS}})},
        {"fchmodat", sum({everywhere, onTheWay, {EPERM, EROFS, EOPNOTSUPP}})},
        {"fchown", sum({everywhere, {EPERM, EROFS, EDQUOT}})},
        {"fchownat", sum({everywhere, onTheWay, {EPERM, EROFS, EDQUOT}})},
        {"futimens", sum({everywhere, {EACCES, EPERM, EROFS}})},
        {"utimensat", sum({everywhere, onTheWay, {EPERM, EROFS}})},
        {"ftruncate", sum({everywhere, {EFBIG, EINVAL, EPERM, EROFS, ETXTBSY, ENOSPC, EDQUOT}})},
        {"fsync", {EIO, ENOSPC, EDQUOT, EROFS, EINVAL, ESTALE, EINTR}},
        {"flock", {EINTR, ENOLCK, EWOULDBLOCK, EOPNOTSUPP}},
        {"lease", {EAGAIN, EACCES, EINVAL, ENOMEM}},
        {"sync_file_range", {EIO, ENOSPC, ENOMEM, EINVAL, ESPIPE}},
        {"fremovexattr", {ENODATA, EOPNOTSUPP, EPERM, EIO}},
        {"syncfs", {EIO, ENOSPC, EDQUOT, ESTALE, EINTR}},
        {"lseek", {EINVAL, ENXIO, EOVERFLOW, ESPIPE, EIO, ESTALE}},
        {"ioctl", {EOPNOTSUPP, EXDEV, EINVAL, ENOTTY, EPERM, EISDIR, ETXTBSY, EIO, ENOSPC, EINTR, ESTALE}},
        {"copy_file_range", sum({everywhere,
                                 {EFBIG, EINVAL, ENOSPC, EDQUOT, EOPNOTSUPP, EOVERFLOW, EPERM, ETXTBSY, EXDEV,
                                  ENOSYS, EROFS, less}})},
        {"pread", sum({everywhere, {EAGAIN, EINVAL, EISDIR, ESPIPE, ENXIO, less}})},
        {"pwrite", sum({everywhere, {EAGAIN, EDQUOT, EFBIG, EINVAL, ENOSPC, EPERM, EROFS, less}})},
        {"write", sum({everywhere, {EAGAIN, EDQUOT, EFBIG, EINVAL, ENOSPC, EPERM, EROFS, less}})},
        {"flistxattr", sum({everywhere, {EOPNOTSUPP, E2BIG, ERANGE, EACCES, EPERM, ENOSYS}})},
        {"fgetxattr", sum({everywhere, {EOPNOTSUPP, E2BIG, ERANGE, ENODATA, EACCES, EPERM, ENOSYS}})},
        {"fsetxattr", sum({everywhere, {EOPNOTSUPP, EDQUOT, ENOSPC, ERANGE, EACCES, EPERM, EROFS, ENOSYS}})},
        {"fcntl", {EMFILE, EINVAL}},
        {"fdopendir", {ENOMEM}},
        {"readdir", sum({everywhere, {ENOENT}})},
        {"getdents64", sum({everywhere, {ENOENT, EINVAL, less}})},
        {"realpath", sum({everywhere, onTheWay})},
    };
    return errors;
}

}  // namespace

const std::vector<int>& errorsOf(std::string_view call) {
    static const Errors none;
    const auto found = table().find(call);
    return found == table().end() ? none : found->second;
}

SystemCallFaults::Plan FaultCase::once() const {
    return [wanted = number, error = error, made = std::size_t{0}](std::string_view) mutable {
        return made++ == wanted ? error : 0;
    };
}

SystemCallFaults::Plan FaultCase::fromThereOn() const {
    return [wanted = number, error = error, made = std::size_t{0}](std::string_view name) mutable {
        return made++ >= wanted && std::ranges::find(errorsOf(name), error) != errorsOf(name).end() ? error
                                                                                                    : 0;
    };
}

std::string FaultCase::description() const {
    const std::string how = error == less ? "gives less" : std::strerror(error);
    return call + " (call " + std::to_string(number) + "): " + how;
}

namespace {

/// Runs the operation; `fault` is asked about each call before the circumstances are.
void run(const FaultTrial& trial, const SystemCallFaults::Plan& fault) {
    const SystemCallFaults::Plan circumstances = trial.circumstances();
    const SystemCallFaults faults([&](std::string_view name) {
        const int answer = fault(name);
        return answer == 0 && circumstances ? circumstances(name) : answer;
    });
    trial.operate();
}

std::vector<FaultCase> casesOf(const FaultTrial& trial) {
    std::vector<FaultCase> cases;
    std::size_t number = 0;
    trial.prepare();
    run(trial, [&](std::string_view name) {
        for (const int error : errorsOf(name)) cases.push_back({number, std::string(name), error});
        ++number;
        return 0;
    });
    return cases;
}

}  // namespace

std::size_t tryEveryFault(const FaultTrial& trial) {
    const std::vector<FaultCase> cases = casesOf(trial);
    EXPECT_FALSE(cases.empty());
    for (const FaultCase& fault : cases) {
        SCOPED_TRACE(fault.description());
        trial.prepare();
        const std::size_t before = openDescriptors();
        run(trial, fault.once());
        EXPECT_EQ(openDescriptors(), before) << "descriptors";
        trial.check(fault);
    }
    return cases.size();
}

}  // namespace vantrel::test
