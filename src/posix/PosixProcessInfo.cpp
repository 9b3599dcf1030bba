#include "posix/PosixProcessInfo.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "base/PathLocation.h"
#include "base/SystemCall.h"

namespace vantrel {

namespace {

struct Free {
    void operator()(char* memory) const { std::free(memory); }
};
using AllocatedText = std::unique_ptr<char, Free>;

std::optional<std::string> currentFolder() {
    const AllocatedText path(::getcwd(nullptr, 0));
    // Older C libraries put "(unreachable)" before a folder outside this process's root.
    if (path == nullptr || path.get()[0] != '/') return std::nullopt;
    return path.get();
}

/// The record that `lookUp` (getpwuid_r or getpwnam_r, its first argument bound) finds, or nothing.
template <class LookUp>
std::optional<PosixProcessInfo::User> findUser(LookUp lookUp) {
    std::vector<char> texts(1024);
    passwd record{};
    passwd* found = nullptr;
    int error = 0;
    while ((error = lookUp(&record, texts.data(), texts.size(), &found)) == ERANGE || error == EINTR) {
        if (error == ERANGE) texts.resize(texts.size() * 2);
    }
    if (error != 0 || found == nullptr) return std::nullopt;
    return PosixProcessInfo::User{.name = record.pw_name, .home = record.pw_dir};
}

std::optional<PosixProcessInfo::User> thisUser() {
    return findUser([](auto... arguments) { return ::getpwuid_r(::geteuid(), arguments...); });
}

std::string environmentValue(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

bool isAbsolute(std::string_view path) {
    return path.starts_with('/');
}

enum class ParentSteps { kept, removed };

/// The components of an absolute path without empty ones and "."; a ".." that is removed takes the component
/// before it along.
std::vector<std::string_view> componentsOf(std::string_view path, ParentSteps parentSteps) {
    std::vector<std::string_view> components;
    while (!path.empty()) {
        const std::string_view component = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(path.size(), component.size() + 1));
        if (component.empty() || component == ".") continue;
        if (component != ".." || parentSteps == ParentSteps::kept) {
            components.push_back(component);
        } else if (!components.empty()) {
            components.pop_back();
        }
    }
    return components;
}

std::string joined(const std::vector<std::string_view>& components) {
    std::string path;
    for (const std::string_view component : components) path.append("/").append(component);
    return path.empty() ? "/" : path;
}

std::string withoutNeedlessSlashes(std::string_view path) {
    return joined(componentsOf(path, ParentSteps::kept));
}

bool namesTheSame(const std::string& path, const std::string& other) {
    struct stat status {
    }, otherStatus{};
    const auto read = [](const std::string& place, struct stat& into) {
        const Result<PathLocation> location = PathLocation::of(place);
        return location &&
               uninterrupted([&] { return ::fstatat(location->folder(), location->path(), &into, 0); }) == 0;
    };
    return read(path, status) && read(other, otherStatus) && status.st_dev == otherStatus.st_dev &&
           status.st_ino == otherStatus.st_ino;
}

}  // namespace

const std::optional<PosixProcessInfo::User>& PosixProcessInfo::user() const {
    if (!wasUserRead_) user_ = thisUser();
    wasUserRead_ = true;
    return user_;
}

std::string PosixProcessInfo::currentDirectoryPath() const {
    return currentFolder().value_or("/");
}

std::string PosixProcessInfo::homeDirectory() const {
    if (!home_) home_ = readHome();
    return *home_;
}

std::string PosixProcessInfo::readHome() const {
    const std::string home = environmentValue("HOME");
    if (isAbsolute(home)) return withoutNeedlessSlashes(home);
    return user() && isAbsolute(user()->home) ? withoutNeedlessSlashes(user()->home) : "/";
}

std::string PosixProcessInfo::userName() const {
    if (!userName_) userName_ = readUserName();
    return *userName_;
}

std::string PosixProcessInfo::readUserName() const {
    if (user()) return user()->name;
    for (const char* const variable : {"USER", "LOGNAME"}) {
        if (std::string name = environmentValue(variable); !name.empty()) return name;
    }
    return std::to_string(::geteuid());
}

std::optional<std::string> PosixProcessInfo::homeDirectoryOf(const std::string& userName) const {
    const std::optional<User> user =
        findUser([&](auto... arguments) { return ::getpwnam_r(userName.c_str(), arguments...); });
    if (!user || !isAbsolute(user->home)) return std::nullopt;
    return user->home;
}

std::string PosixProcessInfo::absolutePath(const std::string& path) const {
    if (path.empty()) return path;
    std::string absolute = path;
    if (!isAbsolute(path)) {
        const std::optional<std::string> start = currentFolder();
        if (!start) return "";
        absolute = *start + '/' + path;
    }
    std::string withParentSteps = withoutNeedlessSlashes(absolute);
    std::string direct = joined(componentsOf(absolute, ParentSteps::removed));
    if (direct == withParentSteps || namesTheSame(direct, withParentSteps)) return direct;
    const AllocatedText withoutLinks(::realpath(withParentSteps.c_str(), nullptr));
    return withoutLinks != nullptr ? withoutLinks.get() : withParentSteps;
}

}  // namespace vantrel
