#pragma once

#include "engine/ADGroupScanController.h"
#include "modules/caches/CacheServices.h"

#include <string>

namespace sweeply {

class Workspace;

/// Everything that applications can rebuild: the user's caches, the photo caches, the machine's caches.
class CachesScanController final : public ADGroupScanController {
  public:
    CachesScanController(const CacheServices& services, ScanCoordinator& coordinator, const Workspace& workspace,
                         const std::string& leoUserCacheDir);

    [[nodiscard]] std::string defaultsName() const override { return "Caches"; }

  private:
    [[nodiscard]] std::string className() const override { return "CachesScanController"; }
};

} // namespace sweeply
