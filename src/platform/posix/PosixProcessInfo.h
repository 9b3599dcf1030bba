#pragma once

#include "platform/ProcessInfo.h"

namespace vantrel {

/// This process and its user by the environment and the user database.
class PosixProcessInfo final : public ProcessInfo {
public:
    std::string currentDirectoryPath() const override;
    /// $HOME where it is absolute, else the user database's answer, else "/".
    std::string homeDirectory() const override;
    std::optional<std::string> homeDirectoryOf(const std::string& userName) const override;
    /// From the user database, else $USER, else $LOGNAME, else the user's number.
    std::string userName() const override;
    /// An empty path names nothing and stays empty. A ".." goes where its removal names the same folder as
    /// the system sees; where a link stands before it the answer is the path without links, and where nothing
    /// exists the ".." stays.
    std::string absolutePath(const std::string& path) const override;
};

}  // namespace vantrel
