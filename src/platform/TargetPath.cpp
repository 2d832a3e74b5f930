#include "platform/TargetPath.h"

namespace sweeply {

namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

} // namespace

std::string normalisedPath(std::string_view path) {
    std::string result;
    result.reserve(path.size());
    if (path.starts_with('/'))
        result = "/";
    while (!path.empty()) {
        const auto slash = path.find('/');
        const auto component = path.substr(0, slash);
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
        if (component.empty() || component == ".")
            continue;
        if (!result.empty() && result.back() != '/')
            result += '/';
        result += component;
    }
    return result;
}

std::string_view lastPathComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    if (path == "/")
        return {};
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view pathWithoutLastComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    const auto slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return {};
    return slash == 0 ? path.substr(0, 1) : withoutTrailingSlashes(path.substr(0, slash));
}

std::string_view pathExtension(std::string_view path) {
    const auto name = lastPathComponent(path);
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view{} : name.substr(dot + 1);
}

std::string_view nameWithoutExtension(std::string_view path) {
    const auto name = lastPathComponent(path);
    const auto extension = pathExtension(name);
    return extension.empty() ? name : name.substr(0, name.size() - extension.size() - 1);
}

std::string joinedPath(std::string_view folder, std::string_view name) {
    std::string result;
    result.reserve(folder.size() + 1 + name.size());
    result = folder;
    if (!result.ends_with('/'))
        result += '/';
    while (name.starts_with('/'))
        name.remove_prefix(1);
    result += name;
    return result;
}

} // namespace sweeply
