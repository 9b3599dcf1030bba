#include "posix/ProcessMark.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>

#include "base/FileDescriptor.h"
#include "base/SystemCall.h"

namespace vantrel {

namespace {

/// The beginning of a file in /proc; empty where there is none.
std::string contentOf(const std::string& path) {
    const FileDescriptor file(
        uninterrupted([&] { return ::openat(AT_FDCWD, path.c_str(), O_RDONLY | O_CLOEXEC); }));
    if (!file) return {};
    std::array<char, 4096> text;
    const ssize_t size = uninterrupted([&] { return ::read(file.number(), text.data(), text.size()); });
    return size > 0 ? std::string(text.data(), static_cast<std::size_t>(size)) : std::string();
}

/// Tells one boot from all others.
std::string bootId() {
    std::string id = contentOf("/proc/sys/kernel/random/boot_id");
    std::erase_if(id, [](char character) { return character == '-' || character == '\n'; });
    return id.substr(0, 16);
}

/// The namespace that our process numbers belong to.
std::string processSpace() {
    struct stat status {};
    return ::stat("/proc/self/ns/pid", &status) == 0 ? std::to_string(status.st_ino) : std::string();
}

/// When a process started, in ticks since boot; empty when no process with that number is alive.
std::string startOf(std::string_view process) {
    const std::string line = contentOf("/proc/" + std::string(process) + "/stat");
    // The name of the program stands in parentheses and may hold anything.
    std::size_t place = line.rfind(')');
    if (place == std::string::npos || line.compare(place, 3, ") Z") == 0 ||
        line.compare(place, 3, ") X") == 0)
        return {};
    constexpr int fieldsBetween = 20;
    for (int field = 0; field < fieldsBetween && place != std::string::npos; ++field)
        place = line.find(' ', place + 1);
    if (place == std::string::npos) return {};
    return line.substr(place + 1, line.find(' ', place + 1) - place - 1);
}

std::string randomText() {
    static constexpr std::string_view digits = "0123456789abcdef";
    std::random_device random;
    std::string text;
    for (std::uint32_t bits = random(), count = 0; count < 8; ++count, bits >>= 4) text += digits[bits & 15];
    return text;
}

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

struct Mark {
    std::string_view boot, space, process, start, random;
};

std::optional<Mark> parse(std::string_view text) {
    Mark mark;
    for (std::string_view* const part : {&mark.boot, &mark.space, &mark.process, &mark.start}) {
        const std::size_t dot = text.find('.');
        if (dot == std::string_view::npos || dot == 0) return std::nullopt;
        *part = text.substr(0, dot);
        text.remove_prefix(dot + 1);
    }
    mark.random = text;
    if (!isNumber(mark.space) || !isNumber(mark.process) || !isNumber(mark.start)) return std::nullopt;
    return mark;
}

}  // namespace

std::string processMark() {
    const std::string process = std::to_string(::getpid());
    return bootId() + '.' + processSpace() + '.' + process + '.' + startOf(process) + '.' + randomText();
}

MarkedProcess processOf(std::string_view text) {
    const std::optional<Mark> mark = parse(text);
    const std::string boot = bootId();
    if (!mark || boot.empty()) return MarkedProcess::unknown;
    if (mark->boot != boot) return MarkedProcess::ended;
    if (mark->space != processSpace()) return MarkedProcess::unknown;
    if (startOf(mark->process) != mark->start) return MarkedProcess::ended;
    return mark->process == std::to_string(::getpid()) ? MarkedProcess::thisOne : MarkedProcess::running;
}

}  // namespace vantrel
