#include "modules/uninstaller/NestedApplications.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

namespace sweeply {

std::vector<std::string> nestedApplications(const FileManager& files, const std::string& bundle) {
    std::vector<std::string> found;
    auto walk = files.enumeratorAtPath(bundle);
    while (const auto entry = walk.next()) {
        if (entry->type != FileType::Directory)
            continue;
        const auto extension = pathExtension(entry->path);
        if (extension == "lproj" || lastPathComponent(entry->path) == "Frameworks")
            walk.skipDescendants();
        else if (extension == "app")
            found.push_back(joinedPath(bundle, entry->path));
    }
    return found;
}

} // namespace sweeply
