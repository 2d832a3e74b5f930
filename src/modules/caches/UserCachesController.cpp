#include "modules/caches/UserCachesController.h"

#include "appcore/FolderConstants.h"
#include "modules/caches/CacheScanner.h"
#include "platform/Localization.h"

#include <utility>

namespace sweeply {

UserCachesController::UserCachesController(const CacheServices& services, std::string leoUserCacheDir)
    : ADScanController(services.engine), m_caches(services), m_leoUserCacheDir(std::move(leoUserCacheDir)) {
    rootNode()->setName(localizedString("User Cache Files"));
    rootNode()->setIcon(Icon::UserCaches);
    initUserDefaults();
}

void UserCachesController::scanThread() {
    prepareForScan();
    scanCachesInPath(m_caches.folders.expandTilde(m_caches.folders.HOMECACHESPATH), *this, m_caches);
    if (!m_leoUserCacheDir.empty() && !stopped())
        scanCachesInPath(m_leoUserCacheDir, *this, m_caches);
}

} // namespace sweeply
