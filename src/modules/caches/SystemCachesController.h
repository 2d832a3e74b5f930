#pragma once

#include "engine/ADScanController.h"
#include "modules/ModuleServices.h"

#include <string>

namespace sweeply {

/// The caches that all users of the machine share. Off unless the person switches it on; removing them may need
/// administrator rights.
class SystemCachesController final : public ADScanController {
  public:
    explicit SystemCachesController(const ModuleServices& services);
    ~SystemCachesController() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "system-caches"; }
    [[nodiscard]] std::string defaultsName() const override { return "CleanSystemCaches"; }
    [[nodiscard]] bool needToSetUserDefalts() const override { return true; }
    [[nodiscard]] bool userDefaultsDefaultValue() const override { return false; }
    [[nodiscard]] bool priviligesNeededToClean() const override { return true; }

  protected:
    void scanThread() override;

  private:
    [[nodiscard]] std::string className() const override { return "SystemCachesController"; }

    ModuleServices m_caches;
};

} // namespace sweeply
