#pragma once

#include "engine/ADScanController.h"
#include "modules/ModuleServices.h"

#include <string>

namespace sweeply {

/// The user's own caches: those in the home folder and, from Mac OS X 10.5 on, those in the folder that the system
/// gives each user for temporary caches.
class UserCachesController final : public ADScanController {
  public:
    /// `leoUserCacheDir` is that folder, empty where there is none.
    UserCachesController(const ModuleServices& services, std::string leoUserCacheDir);
    ~UserCachesController() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "user-caches"; }
    [[nodiscard]] std::string defaultsName() const override { return "CleanCaches"; }
    [[nodiscard]] bool needToSetUserDefalts() const override { return true; }

  protected:
    void scanThread() override;

  private:
    [[nodiscard]] std::string className() const override { return "UserCachesController"; }

    ModuleServices m_caches;
    std::string m_leoUserCacheDir;
};

} // namespace sweeply
