#pragma once

#include <optional>
#include <string>

namespace vantrel {

/// Port: what the system says about this process and its user. Paths are raw bytes. Main thread only.
class ProcessInfo {
public:
    virtual ~ProcessInfo() = default;

    /// Absolute; "/" when the folder that the process was started in is gone.
    virtual std::string currentDirectoryPath() const = 0;

    /// Absolute path of the user's home folder, without needless slashes.
    virtual std::string homeDirectory() const = 0;

    /// Home folder of the user with that login name, or nothing.
    virtual std::optional<std::string> homeDirectoryOf(const std::string& userName) const = 0;

    /// Login name of the user.
    virtual std::string userName() const = 0;

    /// `path` itself when absolute, else below the current folder, without "." and, as far as that names the
    /// same folder, without "..". An empty path stays empty; a relative one becomes so when the current
    /// folder is gone, for it names nothing then.
    virtual std::string absolutePath(const std::string& path) const = 0;
};

}  // namespace vantrel
