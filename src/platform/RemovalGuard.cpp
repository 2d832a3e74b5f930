#include "platform/RemovalGuard.h"

#include "platform/TargetPath.h"

#include <algorithm>

namespace sweeply {

namespace {

std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

bool hasParentReference(std::string_view path) {
    return path == ".." || path.starts_with("../") || path.ends_with("/..") ||
           path.find("/../") != std::string_view::npos;
}

} // namespace

void RemovalGuard::protect(std::string_view path) {
    std::string folder = normalisedPath(path);
    while (folder.size() > 1) {
        if (m_foldedPaths.insert(folded(folder)).second)
            m_paths.push_back(folder);
        folder = std::string(pathWithoutLastComponent(folder));
    }
}

void RemovalGuard::protectTree(std::string_view path) {
    protect(path);
    m_trees.push_back(normalisedPath(path));
}

std::string RemovalGuard::reasonAgainst(std::string_view path) const {
    if (path.empty())
        return "an empty path is never removed";
    if (path.front() != '/')
        return "a relative path is never removed";
    if (path.find('\0') != std::string_view::npos)
        return "the path holds a zero byte";
    if (hasParentReference(path))
        return "a path with \"..\" is never removed";
    const std::string normalised = normalisedPath(path);
    if (normalised == "/")
        return "the root is never removed";
    if (m_foldedPaths.contains(folded(normalised)))
        return "a protected folder is never removed";
    const bool isInTree = std::ranges::any_of(
        m_trees, [&](const std::string& tree) { return folded(normalised).starts_with(folded(tree) + "/"); });
    return isInTree ? "what is kept is not removed so" : std::string();
}

} // namespace sweeply
