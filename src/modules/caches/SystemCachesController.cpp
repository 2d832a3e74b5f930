#include "modules/caches/SystemCachesController.h"

#include "appcore/FolderConstants.h"
#include "modules/caches/CacheScanner.h"
#include "platform/Localization.h"

namespace sweeply {

SystemCachesController::SystemCachesController(const CacheServices& services)
    : ADScanController(services.engine), m_caches(services) {
    rootNode()->setName(localizedString("System Cache Files"));
    rootNode()->setIcon(Icon::SystemCaches);
    initUserDefaults();
}

void SystemCachesController::scanThread() {
    prepareForScan();
    scanCachesInPath(m_caches.folders.expandTilde(m_caches.folders.LIBRARYCACHESPATH), *this, m_caches);
}

} // namespace sweeply
