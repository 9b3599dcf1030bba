#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantrel::test {

/// A new empty folder, removed with everything below it at the end, however deep and whatever its
/// permissions. Aborts the test program when the system does not give one.
class TemporaryFolder {
public:
    TemporaryFolder();
    explicit TemporaryFolder(const std::string& parent);
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    /// Absolute, without a slash at the end.
    const std::string& path() const { return path_; }
    std::string path(std::string_view name) const { return path_ + '/' + std::string(name); }

    /// Each of these makes one entry below this folder and answers its path. Names are raw bytes.
    std::string makeFile(std::string_view name, std::string_view content = {}) const;
    std::string makeFolder(std::string_view name) const;
    std::string makeLink(std::string_view name, const std::string& target) const;
    std::string makeFifo(std::string_view name) const;
    std::string makeSocket(std::string_view name) const;

    /// Folders in folders, `depth` of them, each with that name; answers the path of the innermost.
    std::string makeDeepFolder(std::size_t depth, std::string_view name) const;

private:
    std::string path_;
};

/// A place in memory where there is one: for tests that repeat an operation hundreds of times.
std::string quickPlace();

/// All bytes of a file of any path length; a failed expectation when it cannot be read.
std::string contentOf(const std::string& path);

/// Number of descriptors that this process has open.
std::size_t openDescriptors();

}  // namespace vantrel::test
