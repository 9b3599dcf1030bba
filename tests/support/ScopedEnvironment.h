#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace vantrel::test {

/// Sets, or with no value unsets, an environment variable until the end of the scope; then it is as before.
/// The C library's time zone follows. Only while no other thread reads the environment.
class ScopedEnvironment {
public:
    ScopedEnvironment(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
        if (const char* const before = std::getenv(name_.c_str())) before_ = before;
        set(value);
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment() { set(before_); }

private:
    void set(const std::optional<std::string>& value) {
        if (value) {
            ::setenv(name_.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name_.c_str());
        }
        ::tzset();
    }

    std::string name_;
    std::optional<std::string> before_;
};

/// The user's language for everything until the end of the scope, by POSIX locale name.
class ScopedLocale {
public:
    explicit ScopedLocale(std::string name)
        : all_("LC_ALL", std::nullopt),
          collate_("LC_COLLATE", std::nullopt),
          numeric_("LC_NUMERIC", std::nullopt),
          time_("LC_TIME", std::nullopt),
          language_("LANG", std::move(name)) {}

private:
    ScopedEnvironment all_, collate_, numeric_, time_, language_;
};

}  // namespace vantrel::test
