#include "cli/TargetPaths.h"

#include "app/Target.h"
#include "cli/Commands.h"
#include "platform/Localization.h"
#include "platform/TypedPath.h"

namespace sweeply {

Result<std::string> targetPath(const FileManager& files, const std::string& typed) {
    auto meant = typedPath(files.root(), typed);
    if (!meant)
        return Failure(meant.error());
    if (meant->alsoMeans)
        complain(formatText("%@: taken as a path of the Mac; enter %@ for what lies there on this machine",
                            {typed, *meant->alsoMeans}));
    return std::move(meant->path);
}

Result<std::vector<std::string>> targetPaths(const Target& target, const std::vector<std::string>& operands) {
    std::vector<std::string> paths;
    for (const auto& operand : operands) {
        auto path = targetPath(*target.files, target.folders.expandTilde(operand));
        if (!path)
            return Failure(path.error());
        paths.push_back(*std::move(path));
    }
    return paths;
}

} // namespace sweeply
