#include "base/Paths.h"

#include <algorithm>

namespace vantrel::paths {

namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    return path;
}

bool isWrittenAsItIs(unsigned char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           byte == '-' || byte == '.' || byte == '_' || byte == '~' || byte == '/';
}

}  // namespace

std::string lastComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    if (path == "/") return "/";
    const std::size_t slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string deletingLastComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return "";
    return std::string(withoutTrailingSlashes(path.substr(0, slash == 0 ? 1 : slash)));
}

std::string appending(std::string_view path, std::string_view component) {
    path = withoutTrailingSlashes(path);
    while (component.starts_with('/')) component.remove_prefix(1);
    std::string joined(path);
    if (!joined.empty() && joined.back() != '/') joined += '/';
    joined += component;
    return joined;
}

std::string normalized(std::string_view path) {
    std::string normal = path.starts_with('/') ? "/" : "";
    while (!path.empty()) {
        const std::string_view component = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(path.size(), component.size() + 1));
        if (component.empty() || component == ".") continue;
        normal = component == ".." ? deletingLastComponent(normal) : appending(normal, component);
    }
    return normal;
}

bool isBelow(std::string_view path, std::string_view folder) {
    if (folder == "/") return path.size() > 1 && path.front() == '/';
    return path.size() > folder.size() && path[folder.size()] == '/' && path.starts_with(folder);
}

std::string extension(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size()) return "";
    return std::string(name.substr(dot + 1));
}

std::string percentEncoded(std::string_view path) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (isWrittenAsItIs(byte)) {
            encoded += character;
        } else {
            encoded += '%';
            encoded += digits[byte >> 4];
            encoded += digits[byte & 15];
        }
    }
    return encoded;
}

std::string fileUrl(std::string_view path) {
    return "file://" + percentEncoded(path);
}

}  // namespace vantrel::paths
