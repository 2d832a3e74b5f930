#include "modules/extensions/ExtensionsScanController.h"

#include "engine/ScanCoordinator.h"

#include <algorithm>

namespace sweeply {

ExtensionsScanController::ExtensionsScanController(const ModuleServices& services, ScanCoordinator& coordinator,
                                                   const Parts& parts)
    : ADScanControllerView(services.engine, coordinator), m_cleanerController(services, coordinator, parts.garbage),
      m_widgetsUninstallController(services, coordinator, parts.uninstallers),
      m_preferencesUninstallController(services, coordinator, parts.uninstallers, parts.finder, parts.ownership),
      m_pluginsUninstallController(services, coordinator, parts.uninstallers, parts.garbage.loginItems,
                                   parts.workspace) {
    rootNode()->setEnabledWithoutRecalc(true);
}

void ExtensionsScanController::didSelectTabViewItem(std::string_view identifier) {
    m_currentUninstallController = identifier == kWidgetsTab       ? m_uninstallControllers[0]
                                   : identifier == kPreferencesTab ? m_uninstallControllers[1]
                                   : identifier == kPluginsTab     ? m_uninstallControllers[2]
                                                                   : nullptr;
    if (m_view)
        m_view->showResultsOf(shownController());
    willSwithToYourView();
    refreshInterface();
    auto* uninstaller = currentUninstallController();
    if (uninstaller && !uninstaller->isScanned() && !uninstaller->ifScanRunning() &&
        !globalScanController().ifCleanRunning()) {
        globalScanController().prepareInterfaceForScan();
        uninstaller->scanOnceInThread();
    }
}

void ExtensionsScanController::willSwithToYourView() {
    ADScanControllerView::willSwithToYourView();
    if (m_view)
        m_view->showInformationFor(shownController());
}

ADUninstallControllerView* ExtensionsScanController::uninstallControllerFor(const std::string& path) const {
    const auto found = std::ranges::find_if(
        m_uninstallControllers, [&](const auto* controller) { return controller->isExtensionAtPath(path); });
    return found == m_uninstallControllers.end() ? nullptr : *found;
}

const ADScanControllerView& ExtensionsScanController::shown() const {
    if (const auto* uninstaller = m_currentUninstallController.load())
        return *uninstaller;
    return m_cleanerController;
}

ADScanControllerView& ExtensionsScanController::shownController() {
    if (auto* uninstaller = m_currentUninstallController.load())
        return *uninstaller;
    return m_cleanerController;
}

WorkMode ExtensionsScanController::workMode() const {
    return m_currentUninstallController ? WorkMode::Uninstaller : WorkMode::Cleaner;
}

void ExtensionsScanController::quickScan() {
    if (!ifScanRunning() && !ifCleanRunning())
        shownController().quickScan();
}

void ExtensionsScanController::checkEverything(bool enabled) {
    if (enabled)
        shownController().checkAll();
    else
        shownController().checkNone();
}

void ExtensionsScanController::startUninstallation() {
    if (auto* uninstaller = currentUninstallController())
        uninstaller->startUninstallation();
}

std::size_t ExtensionsScanController::filesFoundForRemove() const {
    return workMode() == WorkMode::Cleaner ? m_cleanerController.filesFound() : 0;
}

void ExtensionsScanController::startScan() {
    if (!m_cleanerController.ifScanRunning())
        m_cleanerController.startScan();
}

void ExtensionsScanController::startClean() {
    if (!m_cleanerController.ifCleanRunning() && rootNode()->ifEnabled())
        m_cleanerController.startClean();
}

bool ExtensionsScanController::ifScanRunning() const {
    return std::ranges::any_of(m_controllers, [](const auto* controller) { return controller->ifScanRunning(); });
}

bool ExtensionsScanController::ifCleanRunning() const {
    return std::ranges::any_of(m_controllers, [](const auto* controller) { return controller->ifCleanRunning(); });
}

std::string ExtensionsScanController::currentItem() const {
    const auto working = std::ranges::find_if(m_controllers, [](const auto* controller) {
        return controller->ifScanRunning() || controller->ifCleanRunning();
    });
    return working == m_controllers.end() ? std::string() : (*working)->currentItem();
}

void ExtensionsScanController::joinScanThread() {
    for (auto* controller : m_controllers)
        controller->joinScanThread();
}

} // namespace sweeply
