#pragma once

#include "modules/extensions/ADUninstallControllerView.h"

namespace sweeply {

class Claims;
class Ownership;
class ResourceFinder;

/// The preference panes of the user and of the machine, each with its preferences and with what belongs to the
/// applications inside it.
class PreferencePanesUnistaller final : public ADUninstallControllerView {
  public:
    /// All outlive this.
    PreferencePanesUnistaller(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts,
                              ResourceFinder& finder, const Ownership& ownership);
    ~PreferencePanesUnistaller() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "pane-uninstaller"; }
    [[nodiscard]] bool isExtensionAtPath(const std::string& path) const override;
    /// Asks before a system's pane goes, and has what runs of it quit.
    bool isRootNodeCleanable(Node& node) override;

  protected:
    void rescan() override;
    void addRecord(const std::string& path) override;
    void prepareForClean() override { ADScanControllerView::prepareForClean(); } // each pane asks for its rights

  private:
    [[nodiscard]] std::string className() const override { return "PreferencePanesUnistaller"; }

    ResourceFinder& m_finder;
    const Ownership& m_ownership;
};

} // namespace sweeply
