#pragma once

#include <string>
#include <string_view>

/// Path arithmetic on raw bytes, with the field's usual rules: "/" is its own parent, trailing slashes do not
/// count, nothing touches the file system. Pure functions, any thread.
namespace vantrel::paths {

/// "c.txt" of "/a/b/c.txt", "b" of "/a/b/", "/" of "/", "" of "".
std::string lastComponent(std::string_view path);

/// "/a/b" of "/a/b/c", "/" of "/a" and of "/", "" of "a".
std::string deletingLastComponent(std::string_view path);

/// "/a/b" of "/a" and "b", "/b" of "/" and "b"; "b" alone where the path is empty.
/// Slashes in front of the component do not make it absolute: "/a" and "/b" give "/a/b".
std::string appending(std::string_view path, std::string_view component);

/// The path without ".", ".." and doubled slashes, by its text alone: "/a/c" of "/a/b/.././/c/". Where a link
/// stands before a "..", the system may mean another place.
std::string normalized(std::string_view path);

/// Whether `path` names something below `folder`, at any depth; both in normal form.
bool isBelow(std::string_view path, std::string_view folder);

/// The text after the last "." of a name, "" when there is none. A leading dot belongs to the base name, and
/// so does one with nothing behind it.
std::string extension(std::string_view name);

/// The path with every byte but "/" and the unreserved characters of RFC 3986 as "%" and two digits.
std::string percentEncoded(std::string_view path);

/// The percent-encoded file URL of an absolute path (RFC 8089).
std::string fileUrl(std::string_view path);

}  // namespace vantrel::paths
