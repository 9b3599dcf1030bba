#pragma once

#include <unistd.h>

#include <utility>

namespace vantrel {

/// An open file of this process, closed exactly once. After close(2) its number is free whatever the answer
/// was, so there is no second try and no error to report. One thread at a time.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            number_ = other.release();
        }
        return *this;
    }
    ~FileDescriptor() { close(); }

    explicit operator bool() const { return number_ >= 0; }
    int number() const { return number_; }

    /// Hands the number to somebody else, who closes it.
    int release() { return std::exchange(number_, -1); }

    void close() {
        if (number_ >= 0) ::close(release());
    }

private:
    int number_ = -1;
};

}  // namespace vantrel
