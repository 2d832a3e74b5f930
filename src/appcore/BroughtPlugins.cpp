#include "appcore/BroughtPlugins.h"

#include "appcore/SWApplicationCore.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <algorithm>

namespace sweeply {

std::vector<std::string> originalPluginsForApplication(const FileManager& files, const std::string& path) {
    const auto& extensions = SWApplicationCore::pluginExtensions();
    std::vector<std::string> names;
    auto walk = files.enumeratorAtPath(path);
    while (const auto entry = walk.next()) {
        if (std::ranges::find(extensions, pathExtension(entry->path)) != extensions.end())
            names.emplace_back(lastPathComponent(entry->path));
    }
    return names;
}

} // namespace sweeply
