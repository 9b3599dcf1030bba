#include <algorithm>
#include <cstddef>

#include "base/Paths.h"
#include "fuzz/Input.h"
#include "fuzz/core/Targets.h"
#include "posix/PosixProcessInfo.h"

namespace vantrel::fuzz {

namespace {

bool holds(const std::string& text, const char* piece) {
    return text.find(piece) != std::string::npos;
}

/// What is left of a path when runs of slashes count as one and those at its end not at all.
std::string collapsed(const std::string& path) {
    std::string result;
    for (const char byte : path) {
        if (byte != '/' || !result.ends_with('/')) result += byte;
    }
    if (result.size() > 1 && result.ends_with('/')) result.pop_back();
    return result;
}

std::string percentDecoded(const std::string& text) {
    const auto digit = [](char c) { return c <= '9' ? c - '0' : c - 'A' + 10; };
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes += text[i];
            continue;
        }
        bytes += static_cast<char>(digit(text.at(i + 1)) << 4 | digit(text.at(i + 2)));
        i += 2;
    }
    return bytes;
}

void checkTakingApart(const std::string& path) {
    const std::string last = paths::lastComponent(path);
    const std::string parent = paths::deletingLastComponent(path);
    const std::string whole = collapsed(path);
    require(whole == "/" ? last == "/" : !holds(last, "/"), "a last component is one component");
    require(last.empty() == path.empty(), "only the empty path has no last component");
    require(parent.size() < path.size() || path.empty() || whole == "/", "a parent is shorter");
    require(whole.starts_with('/') == parent.starts_with('/'), "a parent is absolute as its child is");
    require(parent == "/" || !parent.ends_with('/'), "a parent ends without a slash");
    if (whole != "/") {
        require(collapsed(paths::appending(parent, last)) == whole,
                "parent and last component make the path");
    }
}

void checkJoining(const std::string& path, const std::string& name) {
    const std::string joined = paths::appending(path, name);
    require(paths::lastComponent(joined) == name, "a name that was appended is the last component");
    require(collapsed(paths::deletingLastComponent(joined)) == collapsed(path), "and taken off again");
    require(paths::appending(path, "/" + name) == joined, "a slash does not make a name absolute");
    require(paths::appending(path + "/", name) == joined || path.empty(), "a slash at the end is the same");
}

void checkExtension(const std::string& name) {
    const std::string extension = paths::extension(name);
    if (extension.empty()) return;
    require(!holds(extension, "."), "an extension holds no dot");
    require(name.ends_with("." + extension), "an extension ends its name");
    require(name.size() > extension.size() + 1, "an extension leaves a base name");
}

void checkUrl(const std::string& path) {
    const std::string encoded = paths::percentEncoded(path);
    const auto isPlain = [](unsigned char c) { return c > ' ' && c < 0x7F; };
    require(std::ranges::all_of(encoded, isPlain), "a URL is printable ASCII");
    require(encoded.find_first_of("\"<>\\^`{|}?#[]@!$&'()*+,;=:") == std::string::npos,
            "a URL holds no character with a meaning of its own");
    require(percentDecoded(encoded) == path, "a URL leads back to its path");
    require(paths::fileUrl(path) == "file://" + encoded, "a file URL has its scheme");
}

void checkAbsolute(const std::string& path) {
    const std::string absolute = PosixProcessInfo().absolutePath(path);
    if (path.empty()) {
        require(absolute.empty(), "no path stays none");
        return;
    }
    require(absolute.starts_with('/'), "an absolute path begins at the root");
    require(collapsed(absolute) == absolute, "an absolute path has no needless slash");
    require(!holds(absolute + "/", "/./"), "an absolute path has no step to itself");
}

}  // namespace

void tryPaths(std::span<const std::uint8_t> bytes) {
    Input input(bytes);
    const std::string name = input.name(6);
    const std::string path = input.flag() ? input.rest() : input.text(24);
    checkTakingApart(path);
    checkJoining(path, name);
    checkExtension(name);
    checkUrl(path);
    checkAbsolute(path);
}

}  // namespace vantrel::fuzz
