#include "modules/caches/UserCachesController.h"

#include "appcore/FolderConstants.h"
#include "modules/FolderEntries.h"
#include "modules/caches/CachesScanController.h"
#include "platform/Localization.h"

#include <utility>

namespace sweeply {

UserCachesController::UserCachesController(const ModuleServices& services, std::string leoUserCacheDir)
    : ADScanController(services.engine), m_caches(services), m_leoUserCacheDir(std::move(leoUserCacheDir)) {
    rootNode()->setName(localizedString("User Cache Files"));
    rootNode()->setIcon(Icon::UserCaches);
    initUserDefaults();
}

void UserCachesController::scanThread() {
    prepareForScan();
    scanEntriesOfFolder(m_caches.folders.expandTilde(m_caches.folders.HOMECACHESPATH), *this, m_caches,
                        {kCachesModuleKey, EvidenceRule::CacheFolder});
    if (!m_leoUserCacheDir.empty() && !stopped())
        scanEntriesOfFolder(m_leoUserCacheDir, *this, m_caches, {kCachesModuleKey, EvidenceRule::CacheFolder});
}

} // namespace sweeply
