#include "cli/TargetPaths.h"

#include "app/Target.h"
#include "platform/TargetPath.h"

#include <filesystem>

namespace sweeply {

namespace {

/// The working folder as a path of the target; empty where it is outside.
std::string workingFolder(const FileManager& files) {
    std::error_code error;
    const std::string folder = std::filesystem::current_path(error).string();
    if (error || files.isHostRoot())
        return folder;
    if (folder == files.rootPath())
        return "/";
    return folder.starts_with(files.rootPath() + "/") ? folder.substr(files.rootPath().size()) : std::string();
}

} // namespace

Result<std::vector<std::string>> targetPaths(const Target& target, const std::vector<std::string>& operands) {
    std::vector<std::string> paths;
    for (const auto& operand : operands) {
        std::string path = target.folders.expandTilde(operand);
        if (!path.starts_with('/')) {
            const std::string folder = workingFolder(*target.files);
            if (folder.empty() || path.empty())
                return Failure(Error{ErrorKind::Other, operand, "not an absolute path of the target"});
            path = joinedPath(folder, path);
        }
        paths.push_back(normalisedPath(path));
    }
    return paths;
}

} // namespace sweeply
