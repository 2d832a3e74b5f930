#pragma once

#include "modules/extensions/PluginsUninstaller.h"
#include "modules/extensions/PreferencePanesUnistaller.h"
#include "modules/extensions/WidgetsGarbage.h"
#include "modules/extensions/WidgetsUninstaller.h"

#include <array>
#include <string_view>

namespace sweeply {

class ResourceFinder;

/// Shows one module's results and information in place of another's. Main thread.
class ExtensionsView {
  public:
    virtual ~ExtensionsView() = default;

    virtual void showResultsOf(ADScanControllerView&) {}
    virtual void showInformationFor(ADScanControllerView&) {}
};

/// The one row of the module list for all that extends the system: a cleaner of what extensions left behind and three
/// uninstallers, each on a tab of its own. It has no results itself and hands every request to the module of the
/// selected tab; an uninstaller's tab switches the whole program into uninstaller mode.
class ExtensionsScanController final : public ADScanControllerView {
  public:
    struct Parts {
        WidgetsGarbage::Parts garbage;
        ADUninstallControllerView::Parts uninstallers;
        ResourceFinder& finder;
        const Ownership& ownership;
        const Workspace& workspace;
    };

    /// All outlive this.
    ExtensionsScanController(const ModuleServices& services, ScanCoordinator& coordinator, const Parts& parts);
    ~ExtensionsScanController() override { stopAndJoin(); }

    // The tabs, by their identifiers; every other identifier is the cleaner's
    static constexpr std::string_view kWidgetsTab = "Uninstaller for Widgets";
    static constexpr std::string_view kPreferencesTab = "Uninstaller for Preferences";
    static constexpr std::string_view kPluginsTab = "Uninstaller for Plugins";

    /// Main thread, like all that follows from it. An uninstaller that has no results yet starts to look for them.
    void didSelectTabViewItem(std::string_view identifier);
    void setView(ExtensionsView* view) { m_view = view; }
    /// None while the cleaner is shown.
    [[nodiscard]] ADUninstallControllerView* currentUninstallController() const { return m_currentUninstallController; }
    [[nodiscard]] const std::array<ADUninstallControllerView*, 3>& uninstallControllers() const {
        return m_uninstallControllers;
    }
    [[nodiscard]] WidgetsGarbage& cleanerController() { return m_cleanerController; }
    /// The uninstaller for the extension at `path`; none for anything else.
    [[nodiscard]] ADUninstallControllerView* uninstallControllerFor(const std::string& path) const;

    // Handed on to the selected tab's module

    [[nodiscard]] ADScanControllerView& shownController() override;
    [[nodiscard]] WorkMode workMode() const override;
    [[nodiscard]] std::uint64_t totalSize() const override { return shown().totalSize(); }
    [[nodiscard]] std::size_t filesFound() const override { return shown().filesFound(); }
    [[nodiscard]] std::size_t filesFoundInEnabled() const override { return shown().filesFoundInEnabled(); }
    [[nodiscard]] std::uint64_t totalProcentage() const override { return shown().totalProcentage(); }
    [[nodiscard]] std::uint64_t totalProcentageDone() const override { return shown().totalProcentageDone(); }
    void setEveryObjectEnabled(bool enabled) override { shownController().setEveryObjectEnabled(enabled); }
    void quickScan() override;
    void startUninstallation() override;

    // Handed on to the cleaner

    [[nodiscard]] std::vector<ADScanController*> parts() override { return {&m_cleanerController}; }
    [[nodiscard]] bool ifAnyEnabled() const override { return m_cleanerController.ifAnyEnabled(); }
    [[nodiscard]] std::size_t filesFoundForRemove() const override;
    void preffernecesUpdated() override { m_cleanerController.preffernecesUpdated(); }
    void prepareForGlobalClean() override { m_cleanerController.prepareForGlobalClean(); }
    void startScan() override;
    void startClean() override;

    // Of all four: one may still be at work when the tab is changed

    [[nodiscard]] bool ifScanRunning() const override;
    [[nodiscard]] bool ifCleanRunning() const override;
    [[nodiscard]] std::string currentItem() const override;
    void joinScanThread() override;
    void willSwithToYourView() override;

  protected:
    void checkEverything(bool enabled) override;

  private:
    [[nodiscard]] std::string className() const override { return "ExtensionsScanController"; }
    [[nodiscard]] const ADScanControllerView& shown() const;

    WidgetsGarbage m_cleanerController;
    WidgetsUninstaller m_widgetsUninstallController;
    PreferencePanesUnistaller m_preferencesUninstallController;
    PluginsUninstaller m_pluginsUninstallController;
    const std::array<ADUninstallControllerView*, 3> m_uninstallControllers{
        &m_widgetsUninstallController, &m_preferencesUninstallController, &m_pluginsUninstallController};
    const std::array<ADScanControllerView*, 4> m_controllers{&m_cleanerController, &m_widgetsUninstallController,
                                                             &m_preferencesUninstallController,
                                                             &m_pluginsUninstallController};
    std::atomic<ADUninstallControllerView*> m_currentUninstallController = nullptr; ///< figures are asked by any thread
    ExtensionsView* m_view = nullptr;
};

} // namespace sweeply
