#pragma once

#include <string>
#include <string_view>

namespace sweeply {

/// The path without repeated slashes, "." components and a trailing slash. ".." stays: what it means depends on links.
[[nodiscard]] std::string normalisedPath(std::string_view path);

/// The last component: "c" of "/a/b/c/"; empty for "/".
[[nodiscard]] std::string_view lastPathComponent(std::string_view path);
/// What is left without the last component: "/a/b" of "/a/b/c", "/" of "/a", "" of "a".
[[nodiscard]] std::string_view pathWithoutLastComponent(std::string_view path);
/// The extension of the last component without its dot: "app" of "/a/b.app"; empty for "/a/.hidden".
[[nodiscard]] std::string_view pathExtension(std::string_view path);
/// The last component without its extension: "b" of "/a/b.app".
[[nodiscard]] std::string_view nameWithoutExtension(std::string_view path);
/// `folder` and `name` with exactly one slash between them.
[[nodiscard]] std::string joinedPath(std::string_view folder, std::string_view name);

} // namespace sweeply
