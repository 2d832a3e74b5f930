#pragma once

#include "modules/extensions/ADUninstallControllerView.h"

namespace sweeply {

/// The widgets that the user has installed; the system's own are not offered.
class WidgetsUninstaller final : public ADUninstallControllerView {
  public:
    WidgetsUninstaller(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts);
    ~WidgetsUninstaller() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "widget-uninstaller"; }
    [[nodiscard]] bool isExtensionAtPath(const std::string& path) const override;

  protected:
    void rescan() override;
    void addRecord(const std::string& path) override;

  private:
    [[nodiscard]] std::string className() const override { return "WidgetsUninstaller"; }
};

} // namespace sweeply
