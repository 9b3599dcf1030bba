#include <algorithm>
#include <optional>
#include <string>

#include "app/AppDelegate.h"
#include "fuzz/Input.h"
#include "fuzz/core/Targets.h"
#include "support/FakeDesktop.h"

namespace vantrel::fuzz {

namespace {

// Written once more, by the rule: "~" or "~user" up to the first slash is a home, if there is such a user.
std::string expanded(const std::string& path, const test::FakeProcessInfo& process) {
    if (path.empty() || path[0] != '~') return path;
    std::size_t end = 1;
    while (end < path.size() && path[end] != '/') ++end;
    const std::string user = path.substr(1, end - 1);
    std::string home = process.home;
    if (!user.empty()) {
        const auto known = process.homes.find(user);
        if (known == process.homes.end()) return path;
        home = known->second;
    }
    while (end < path.size() && path[end] == '/') ++end;
    const bool hasSlash = path.find('/') != std::string::npos;
    if (!hasSlash) return home;
    while (home.size() > 1 && home.back() == '/') home.pop_back();
    return home == "/" ? home + path.substr(end) : home + "/" + path.substr(end);
}

}  // namespace

void tryTilde(std::span<const std::uint8_t> bytes) {
    Input input(bytes);
    test::FakeDesktop desktop;
    desktop.process.home = "/" + input.name(3);
    const std::string user = input.name(3);
    desktop.process.homes[user] = input.flag() ? "/" : "/home/" + input.name(3);
    const std::string tail = input.text(12);
    std::string inUsersHome = "~" + user;
    inUsersHome += "/" + tail;
    for (const std::string& path : {"~" + tail, "~/" + tail, "~" + user, inUsersHome, tail}) {
        const AppDelegate delegate(desktop.ports(), *desktop.engine, {"vantrel", path, path, path});
        require(delegate.initialLeftPath() == delegate.initialRightPath(), "both folders are read alike");
        require(delegate.initialLeftPath() == expanded(path, desktop.process), "a tilde means the home");
    }
}

}  // namespace vantrel::fuzz
