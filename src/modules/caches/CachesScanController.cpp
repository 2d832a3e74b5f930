#include "modules/caches/CachesScanController.h"

#include "modules/caches/PhotoSyncCachesController.h"
#include "modules/caches/SystemCachesController.h"
#include "modules/caches/UserCachesController.h"
#include "platform/Localization.h"

namespace sweeply {

CachesScanController::CachesScanController(const ModuleServices& services, ScanCoordinator& coordinator,
                                           const Workspace& workspace, const std::string& leoUserCacheDir)
    : ADGroupScanController(services.engine, coordinator) {
    rootNode()->setName(localizedString("Caches"));
    addScanController(std::make_unique<UserCachesController>(services, leoUserCacheDir));
    addScanController(std::make_unique<PhotoSyncCachesController>(services, workspace));
    addScanController(std::make_unique<SystemCachesController>(services));
}

} // namespace sweeply
