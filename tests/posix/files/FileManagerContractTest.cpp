#include "support/FileManagerContract.h"

#include <cerrno>
#include <memory>

#include "posix/files/PosixFileManager.h"
#include "support/ScopedEnvironment.h"
#include "support/SystemCallFaults.h"
#include "support/TemporaryFolder.h"

namespace vantrel::test {

class PosixFilesSubject {
public:
    PosixFilesSubject() { folder_.makeFolder("work"); }

    FileManager& files() { return files_; }
    std::string path(const std::string& name) const { return folder_.path("work/" + name); }
    void makeFile(const std::string& name, const std::string& content) const {
        folder_.makeFile("work/" + name, content);
    }
    void makeFolder(const std::string& name) const { folder_.makeFolder("work/" + name); }
    void makeLink(const std::string& name, const std::string& target) const {
        folder_.makeLink("work/" + name, target);
    }

    std::unique_ptr<SystemCallFaults> failing(std::errc reason) const {
        return std::make_unique<SystemCallFaults>(
            [error = static_cast<int>(reason)](std::string_view) { return error; });
    }
    /// Not by permissions, which do not hold back root.
    std::unique_ptr<SystemCallFaults> refusingToRead(const std::string&) const {
        return std::make_unique<SystemCallFaults>(
            [](std::string_view call) { return call == "openat" || call == "faccessat" ? EACCES : 0; });
    }

private:
    TemporaryFolder folder_;
    ScopedEnvironment trash_{"XDG_DATA_HOME", folder_.path("data")};
    PosixFileManager files_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, FileManagerContract, PosixFilesSubject);

}  // namespace vantrel::test
