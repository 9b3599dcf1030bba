#pragma once

#include <system_error>
#include <utility>
#include <variant>

namespace vantrel {

/// A value, or the reason why there is none. Reading the value of a failure stops the program (std::get
/// without exceptions being expected is a programming error). A plain value: it owns what it holds, and only
/// one thread at a time may use it.
template <class T>
class [[nodiscard]] Result {
public:
    Result(T value) : state_(std::move(value)) {}     // NOLINT: an answer converts by itself
    Result(std::error_code error) : state_(error) {}  // NOLINT: so does a reason
    explicit operator bool() const { return state_.index() == 0; }
    T& value() { return std::get<0>(state_); }
    const T& value() const { return std::get<0>(state_); }
    T& operator*() { return value(); }
    const T& operator*() const { return value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }
    std::error_code error() const { return *this ? std::error_code() : std::get<1>(state_); }

private:
    std::variant<T, std::error_code> state_;
};

}  // namespace vantrel
