#pragma once

#include "engine/ADGroupScanController.h"
#include "modules/ModuleServices.h"

#include <string>

namespace sweeply {

class Workspace;

/// The switch-independent key under which all cache modules keep their unchecked items.
inline constexpr const char* kCachesModuleKey = "Caches";

/// Everything that applications can rebuild: the user's caches, the photo caches, the machine's caches.
class CachesScanController final : public ADGroupScanController {
  public:
    CachesScanController(const ModuleServices& services, ScanCoordinator& coordinator, const Workspace& workspace,
                         const std::string& leoUserCacheDir);

    [[nodiscard]] std::string defaultsName() const override { return kCachesModuleKey; }

  private:
    [[nodiscard]] std::string className() const override { return "CachesScanController"; }
};

} // namespace sweeply
