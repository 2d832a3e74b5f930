#include "modules/uninstaller/NestedApplications.h"

#include "appcore/sizes/DiskSizes.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <mutex>

namespace sweeply {

namespace {

/// Is it in a folder that holds no applications of the person's?
bool isPartOfAnother(std::string_view path) {
    for (auto folder = pathWithoutLastComponent(path); !folder.empty(); folder = pathWithoutLastComponent(folder)) {
        if (pathExtension(folder) == "lproj" || lastPathComponent(folder) == "Frameworks")
            return true;
    }
    return false;
}

} // namespace

BundleContents contentsOfBundle(const DiskSizes& sizes, const std::string& bundle) {
    BundleContents contents;
    std::mutex mutex;
    contents.measured = sizes.measure(bundle, [&](const std::string& path) {
        if (pathExtension(path) != "app" || isPartOfAnother(path))
            return;
        const std::lock_guard lock(mutex);
        contents.applications.push_back(joinedPath(bundle, path));
    });
    std::ranges::sort(contents.applications);
    return contents;
}

} // namespace sweeply
