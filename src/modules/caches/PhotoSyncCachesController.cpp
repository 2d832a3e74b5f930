#include "modules/caches/PhotoSyncCachesController.h"

#include "appcore/FolderConstants.h"
#include "appcore/sizes/DiskSizes.h"
#include "modules/FolderEntries.h"
#include "modules/caches/CachesScanController.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"
#include "platform/Workspace.h"

#include <algorithm>
#include <array>

namespace sweeply {

namespace {

constexpr std::string_view kCacheName = "iPod Photo Cache";
constexpr std::string_view kPhotoApplication = "com.apple.iPhoto";
constexpr std::string_view kPhotoLibraryExtension = "aplibrary";
/// Folders directly in the home folder that are never searched: large, and no photo library lives there.
constexpr std::array<std::string_view, 4> kIgnoreDirs{"Library", "Music", "Movies", "Sites"};
/// What keeps the books of a cache and is never removed.
constexpr std::array<std::string_view, 2> kBookkeeping{"Photo Database", "iPodInfo.plist"};

bool isBookkeeping(std::string_view name) { return std::ranges::find(kBookkeeping, name) != kBookkeeping.end(); }

} // namespace

PhotoSyncCachesController::PhotoSyncCachesController(const ModuleServices& services, const Workspace& workspace)
    : ADScanController(services.engine), m_caches(services), m_workspace(workspace) {
    rootNode()->setName(localizedString("iPod Photo Cache"));
    rootNode()->setIcon(Icon::PhotoSyncCaches);
    initUserDefaults();
}

bool PhotoSyncCachesController::isEntered(const std::string& path) const {
    if (!m_workspace.isFilePackageAtPath(path) || pathExtension(path) == kPhotoLibraryExtension)
        return true;
    const auto owner = m_workspace.applicationForFile(path);
    return owner && owner->bundleIdentifier == kPhotoApplication;
}

bool PhotoSyncCachesController::holdsPhotos(const std::string& path) const {
    const auto entries = m_caches.files.contentsOfDirectoryAtPath(path);
    // One that cannot be listed may hold photos.
    return !entries || !std::ranges::all_of(*entries, [](const DirectoryEntry& entry) {
        return isBookkeeping(entry.name) || entry.name == ".DS_Store";
    });
}

void PhotoSyncCachesController::scanThread() {
    prepareForScan();
    const std::string& home = m_caches.folders.home;
    const auto entries = m_caches.files.contentsOfDirectoryAtPath(home);
    if (!entries)
        return;
    incTotalProcentageBy(static_cast<std::uint32_t>(entries->size()));
    const RememberedNodes nodes(m_caches.ignoreList, kCachesModuleKey, EvidenceRule::PhotoCache);
    auto walk = m_caches.files.enumeratorAtPath(home);
    while (const auto entry = walk.next()) {
        waitWhilePaused();
        if (stopped())
            return;
        if (entry->level == 0)
            incProgress();
        // A link is nobody's cache: what it leads to is found at its own place, or is not the user's.
        if (entry->type != FileType::Directory)
            continue;
        if (entry->level == 0 && std::ranges::find(kIgnoreDirs, entry->path) != kIgnoreDirs.end()) {
            walk.skipDescendants();
            continue;
        }
        std::string path = joinedPath(home, entry->path);
        setCurrentItem(path);
        if (!isEntered(path)) {
            walk.skipDescendants();
            continue;
        }
        if (lastPathComponent(entry->path) == kCacheName && holdsPhotos(path)) {
            walk.skipDescendants();
            const auto library = lastPathComponent(pathWithoutLastComponent(entry->path));
            const auto size = m_caches.sizes.measure(path);
            addChildNode(nodes.nodeFor(localizedFormat("\"%@\" Photo Cache", {library}), std::move(path), size));
            sleepAfterItem();
            rootNodeChanged();
        }
    }
}

ChangeRequest PhotoSyncCachesController::changeFor(const Node& node) const {
    auto request = requestFor(node, Operation::Remove);
    request.hasParts = true;
    const auto entries = m_caches.files.contentsOfDirectoryAtPath(request.path);
    if (!entries)
        request.obstacle = entries.error();
    for (const auto& entry : entries.value_or(std::vector<DirectoryEntry>())) {
        if (!isBookkeeping(entry.name))
            request.parts.push_back(joinedPath(request.path, entry.name));
    }
    return request;
}

} // namespace sweeply
