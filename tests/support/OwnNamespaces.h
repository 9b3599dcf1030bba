#pragma once

#include <functional>
#include <string>

#include "support/TemporaryFolder.h"

namespace vantrel::test {

enum class Privileges {
    none,      ///< those of an ordinary user: permissions and read-only mounts hold
    mounting,  ///< may mount and unmount in namespaces of its own, and nothing else
};

/// Runs a part of the running test in a process with mounts of its own, so that nobody else sees them and
/// none stays behind. It is an ordinary user's process, also where root runs the tests; `folder` is given to
/// that user. First `mount` is called, which may mount and says whether it could; then `body`, whose failed
/// expectations count. Where the system does not let the test mount anything, the test is skipped.
void inOwnNamespaces(const TemporaryFolder& folder, Privileges privileges, const std::function<bool()>& mount,
                     const std::function<void()>& body);

/// Mounts a file system in memory; `options` are those of tmpfs(5), such as "size=1m".
bool mountMemory(const std::string& where, const std::string& options);

/// Makes this process one of an ordinary user where it is root's. For a child process only.
bool becomeOrdinaryUser();

}  // namespace vantrel::test
