#pragma once

#include "engine/ADGroupScanController.h"
#include "modules/ModuleServices.h"

#include <string>

namespace sweeply {

class ScanCoordinator;

/// Logs of the user and of the machine. They are emptied, not removed: programs that hold a log open, or expect it to
/// be there, go on working.
class LogsController final : public ADGroupScanController {
  public:
    LogsController(const ModuleServices& services, ScanCoordinator& coordinator);

    [[nodiscard]] std::string defaultsName() const override { return kModuleKey; }

    /// Under which both sub-modules keep their unchecked items.
    static constexpr const char* kModuleKey = "Logs";

    /// Lists the entries of a log folder that are worth it. "~" is expanded. Runs on the module's scan thread.
    static void scanLogsInPath(const std::string& path, ADScanController& module, const ModuleServices& services);

    /// What becomes of one entry of a log folder: it is emptied, or every file in it, in place; the folders of the
    /// crash and hang reporters lose their entries instead. Any thread.
    [[nodiscard]] ChangeRequest rotationOf(ChangeRequest request) const;

  private:
    [[nodiscard]] std::string className() const override { return "LogsController"; }
    void addFilesBelow(ChangeRequest& request) const;

    const FileManager& m_files;
};

} // namespace sweeply
