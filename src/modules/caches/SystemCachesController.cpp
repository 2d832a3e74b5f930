#include "modules/caches/SystemCachesController.h"

#include "appcore/FolderConstants.h"
#include "modules/FolderEntries.h"
#include "modules/caches/CachesScanController.h"
#include "platform/Localization.h"

namespace sweeply {

SystemCachesController::SystemCachesController(const ModuleServices& services)
    : ADScanController(services.engine), m_caches(services) {
    rootNode()->setName(localizedString("System Cache Files"));
    rootNode()->setIcon(Icon::SystemCaches);
    initUserDefaults();
}

void SystemCachesController::scanThread() {
    prepareForScan();
    scanEntriesOfFolder(m_caches.folders.expandTilde(m_caches.folders.LIBRARYCACHESPATH), *this, m_caches,
                        {kCachesModuleKey, EvidenceRule::CacheFolder});
}

} // namespace sweeply
