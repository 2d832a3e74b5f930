#pragma once

#include "engine/ADScanControllerView.h"
#include "modules/ModuleServices.h"

#include <functional>
#include <string>

namespace sweeply {

/// Files and folders that the user drops on it, to be removed; overwritten first when he wants that. It searches for
/// nothing itself.
class EraserController final : public ADScanControllerView {
  public:
    /// `usesSecureErase` tells whether files are overwritten; asked on the removal thread.
    EraserController(const ModuleServices& services, ScanCoordinator& coordinator,
                     std::function<bool()> usesSecureErase);
    ~EraserController() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "eraser"; }
    [[nodiscard]] bool shouldRespondToDragEvents() const override { return true; }
    [[nodiscard]] bool updateTimerNeeded() const override { return false; }
    void analyzeFile(const std::string& path) override;
    /// There is nothing to scan.
    void startScan() override { finishScan(); }
    /// Shows the area to drop files on, and forgets what was dropped.
    void showDropImageView() override;
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override;

  private:
    [[nodiscard]] std::string className() const override { return "EraserController"; }

    ModuleServices m_eraser;
    const std::function<bool()> m_usesSecureErase;
};

} // namespace sweeply
