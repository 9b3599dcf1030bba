#pragma once

#include "platform/ProcessInfo.h"

namespace vantrel {

/// This process and its user, from the environment and the user database. Home and user are read when first
/// asked for, then kept: every repaint wants them, and the database may be on another machine. Main thread
/// only.
class PosixProcessInfo final : public ProcessInfo {
public:
    /// What the user database says about a user.
    struct User {
        std::string name;
        std::string home;
    };

    std::string currentDirectoryPath() const override;
    /// $HOME where it is absolute, else the user database's answer, else "/".
    std::string homeDirectory() const override;
    std::optional<std::string> homeDirectoryOf(const std::string& userName) const override;
    /// From the user database, else $USER, else $LOGNAME, else the user's number.
    std::string userName() const override;
    /// An empty path names nothing and stays empty. A ".." is removed where the shorter path names the folder
    /// that the system would reach; where a link stands before it the answer is the path without links, and
    /// where nothing exists the ".." stays.
    std::string absolutePath(const std::string& path) const override;

private:
    const std::optional<User>& user() const;
    std::string readHome() const;
    std::string readUserName() const;

    mutable bool wasUserRead_ = false;
    mutable std::optional<User> user_;
    mutable std::optional<std::string> home_;
    mutable std::optional<std::string> userName_;
};

}  // namespace vantrel
