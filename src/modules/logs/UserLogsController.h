#pragma once

#include "engine/ADScanController.h"
#include "modules/ModuleServices.h"

#include <string>

namespace sweeply {

class LogsController;

/// The user's own logs.
class UserLogsController final : public ADScanController {
  public:
    /// `group` outlives this.
    UserLogsController(const ModuleServices& services, LogsController& group);
    ~UserLogsController() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "user-logs"; }
    [[nodiscard]] std::string defaultsName() const override { return "CleanUserLogs"; }
    [[nodiscard]] bool needToSetUserDefalts() const override { return true; }
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override;

  protected:
    void scanThread() override;

  private:
    [[nodiscard]] std::string className() const override { return "UserLogsController"; }

    ModuleServices m_logs;
    LogsController& m_group;
};

} // namespace sweeply
