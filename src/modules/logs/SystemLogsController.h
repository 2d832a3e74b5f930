#pragma once

#include "engine/ADScanController.h"
#include "modules/ModuleServices.h"

#include <string>

namespace sweeply {

class LogsController;

/// The logs that all users share. Off unless the person switches it on; emptying them may need administrator rights.
class SystemLogsController final : public ADScanController {
  public:
    /// `group` outlives this.
    SystemLogsController(const ModuleServices& services, LogsController& group);
    ~SystemLogsController() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "system-logs"; }
    [[nodiscard]] std::string defaultsName() const override { return "CleanSystemLogs"; }
    [[nodiscard]] bool needToSetUserDefalts() const override { return true; }
    [[nodiscard]] bool userDefaultsDefaultValue() const override { return false; }
    [[nodiscard]] bool priviligesNeededToClean() const override { return true; }
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override;

  protected:
    void scanThread() override;

  private:
    [[nodiscard]] std::string className() const override { return "SystemLogsController"; }

    ModuleServices m_logs;
    LogsController& m_group;
};

} // namespace sweeply
