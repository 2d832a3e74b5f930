#include "platform/TypedPath.h"

#include "platform/TargetPath.h"
#include "platform/TargetRoot.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

namespace sweeply {

namespace {

struct Resolved {
    std::string path;
    /// Did ".." ask for the folder above the root?
    bool climbedOut = false;
};

/// The target path without "..". Only the folders before one are resolved: what comes after keeps the way it was named,
/// by which lists know it.
Resolved withoutParents(const TargetRoot& root, std::string_view path) {
    Resolved resolved{"/"};
    std::string_view rest = path;
    while (!rest.empty()) {
        const auto slash = rest.find('/');
        const auto component = rest.substr(0, slash);
        rest.remove_prefix(slash == std::string_view::npos ? rest.size() : slash + 1);
        if (component.empty() || component == ".")
            continue;
        if (component != "..") {
            resolved.path = joinedPath(resolved.path, component);
            continue;
        }
        const auto folder = root.openItem(resolved.path, O_PATH | O_DIRECTORY);
        const auto place = folder ? root.placeOf(*folder, resolved.path) : Failure(folder.error());
        if (!place)
            return {normalisedPath(path)};
        const bool isRoot = place->empty() || *place == "/";
        resolved.climbedOut = resolved.climbedOut || isRoot;
        resolved.path = isRoot ? "/" : pathWithoutLastComponent(*place);
    }
    return resolved;
}

bool exists(const TargetRoot& root, const std::string& path) {
    return root.openItem(path, O_PATH | O_NOFOLLOW).has_value();
}

} // namespace

std::optional<std::string> pathBehindRoot(const TargetRoot& root, std::string_view hostPath) {
    struct stat wanted {};
    if (::fstat(root.descriptor(), &wanted) != 0)
        return std::nullopt;
    for (std::size_t end = hostPath.size(); end > 0; end = hostPath.rfind('/', end - 1)) {
        if (end == std::string_view::npos)
            return std::nullopt;
        struct stat status {};
        const std::string beginning(hostPath.substr(0, end));
        if (::stat(beginning.c_str(), &status) == 0 && status.st_dev == wanted.st_dev && status.st_ino == wanted.st_ino)
            return joinedPath("/", hostPath.substr(end));
    }
    return std::nullopt;
}

Result<TypedPath> typedPath(const TargetRoot& root, std::string_view typed) {
    const bool isHost = root.path() == "/";
    std::string hostPath(typed);
    if (!typed.starts_with('/')) {
        std::error_code error;
        const auto folder = std::filesystem::current_path(error);
        if (error || typed.empty())
            return Failure(Error{ErrorKind::Other, hostPath, "not an absolute path of the target"});
        hostPath = joinedPath(folder.string(), typed);
    }
    if (isHost)
        return TypedPath{withoutParents(root, hostPath).path, {}};
    std::optional<Resolved> asShown;
    if (const auto behind = pathBehindRoot(root, hostPath))
        asShown = withoutParents(root, *behind);
    if (!typed.starts_with('/')) {
        if (!asShown || asShown->climbedOut)
            return Failure(Error{ErrorKind::OutsideRoot, std::string(typed),
                                 "lies outside of " + root.path() + "; not a path of the target"});
        return TypedPath{asShown->path, {}};
    }
    const auto asTarget = withoutParents(root, typed);
    if (!asShown || asShown->climbedOut)
        return TypedPath{asTarget.path, {}};
    if (!exists(root, asTarget.path))
        return TypedPath{asShown->path, {}};
    const bool isDoubtful = asShown->path != asTarget.path && exists(root, asShown->path);
    return TypedPath{asTarget.path, isDoubtful ? std::optional(asShown->path) : std::nullopt};
}

} // namespace sweeply
