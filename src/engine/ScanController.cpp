#include "engine/ScanController.h"

#include "appcore/RemovalPrimitives.h"
#include "engine/AuthorisationSession.h"
#include "engine/CoordinatorPreferences.h"
#include "engine/ModuleSettings.h"
#include "engine/RunReports.h"
#include "engine/SpaceStatistics.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace sweeply {

namespace {

constexpr std::uint8_t kLastCleanerView = 6; // the later ones uninstall and erase what is dropped on them

} // namespace

ScanController::ScanController(EngineServices services, Helpers helpers)
    : m_services(services), m_helpers(std::move(helpers)),
      m_analysing(services.notifications.observe<PrepareInterfaceForAnaliz>(
          [this](const auto&) { prepareInterfaceForAnaliz(); })) {}

ScanController::~ScanController() {
    for (const auto& module : m_modules)
        module->stopRun();
    m_services.notifications.post(RunningStopped{});
    if (m_removeThread.joinable())
        m_removeThread.join();
    for (const auto& module : m_modules)
        module->stopAndJoin();
}

void ScanController::addModule(std::unique_ptr<ScanObject> row, std::unique_ptr<ADScanControllerView> module) {
    row->setCorrespondingScanController(*module);
    row->quietSetEnabled(module->ifAnyEnabled());
    m_rows.push_back(std::move(row));
    m_modules.push_back(std::move(module));
}

ADScanControllerView* ScanController::moduleForViewCode(std::uint8_t viewCode) const {
    const auto found = std::ranges::find_if(m_rows, [&](const auto& row) { return row->viewName() == viewCode; });
    return found == m_rows.end() ? nullptr : (*found)->correspondingScanController();
}

// Figures

template<typename Figure>
std::uint64_t ScanController::sumOf(Figure figure) const {
    std::uint64_t sum = 0;
    for (const auto& module : m_modules)
        sum += figure(*module);
    return sum;
}

std::uint64_t ScanController::totalSize() const {
    return sumOf([](const auto& module) { return module.totalSize(); });
}

std::uint64_t ScanController::foundSize() const {
    return sumOf([](const auto& module) { return module.ifAnyEnabled() ? module.totalSize() : 0; });
}

std::uint64_t ScanController::filesFound() const {
    return sumOf([](const auto& module) { return module.filesFound(); });
}

std::uint64_t ScanController::filesFoundInEnabled() const {
    return sumOf([](const auto& module) { return module.filesFoundInEnabled(); });
}

std::uint64_t ScanController::filesFoundForRemove() const {
    return sumOf([](const auto& module) { return module.filesFoundForRemove(); });
}

float ScanController::totalProcentDone() const {
    std::uint64_t total = 0;
    std::uint64_t done = 0;
    for (const auto& module : m_modules) {
        const std::uint64_t all = module->totalProcentage();
        total += all;
        done += std::min(module->totalProcentageDone(), all);
    }
    return total == 0 ? 1.0F : static_cast<float>(done) / static_cast<float>(total);
}

std::string ScanController::lastScannedOn() const {
    return m_services.defaults.stringForKey(coordinator::kLastScannedOn).value_or(std::string());
}

bool ScanController::ifScanRunning() const {
    return std::ranges::any_of(m_modules, [](const auto& module) { return module->ifScanRunning(); });
}

bool ScanController::ifCleanRunning() const {
    return m_removing || std::ranges::any_of(m_modules, [](const auto& module) { return module->ifCleanRunning(); });
}

bool ScanController::ifAnyEnabled() const {
    return std::ranges::any_of(m_rows,
                               [](const auto& row) { return row->checked() && row->viewName() <= kLastCleanerView; });
}

// The window

void ScanController::showButtons() {
    if (m_mainView)
        m_mainView->actionButtonsChanged(m_buttons);
}

void ScanController::changeViewTo(std::uint8_t viewCode) {
    if (m_mainView)
        m_mainView->changeViewTo(viewCode);
}

void ScanController::gotoUninstallerMode() {
    if (m_workMode == WorkMode::Uninstaller)
        return;
    m_workMode = WorkMode::Uninstaller;
    m_buttons.showMode(m_workMode);
    showButtons();
}

void ScanController::gotoCleanerMode() {
    if (m_workMode == WorkMode::Cleaner)
        return;
    m_workMode = WorkMode::Cleaner;
    m_buttons.showMode(m_workMode);
    if (!ifScanRunning() && !ifCleanRunning() && !m_stopping) {
        m_buttons.scan = {translatableButton("Scan"), Action::StartScan, true};
        enableRemoveButton();
    }
    showButtons();
}

void ScanController::enableRemoveButton() {
    m_buttons.remove.isEnabled = (m_workMode == WorkMode::Uninstaller ? filesFound() : filesFoundForRemove()) > 0;
    showButtons();
}

void ScanController::refreshInterface() {
    for (const auto& row : m_rows) {
        if (const auto* module = row->correspondingScanController())
            row->quietSetEnabled(module->ifAnyEnabled());
    }
    if (m_mainView)
        m_mainView->reloadModuleList();
}

void ScanController::preferencesChanged() {
    for (const auto& row : m_rows) {
        row->setChecked(isRowCheckedByPreferences(row->viewName(), m_services.defaults));
        if (auto* module = row->correspondingScanController())
            m_services.mainThread.runLater([module] { module->preffernecesUpdated(); });
    }
}

// Scanning

void ScanController::startScan() {
    m_services.log.log("Scan button click");
    if (ifScanRunning() || ifCleanRunning())
        return;
    if (!ifAnyEnabled()) {
        m_helpers.reports.nothingToScan();
        return;
    }
    prepareInterfaceForScan();
    for (const auto& row : m_rows) {
        if (row->checked() && row->viewName() <= kLastCleanerView && row->correspondingScanController())
            row->correspondingScanController()->startScan();
    }
}

void ScanController::beginScan(bool canPause) {
    m_stopping = false;
    m_scanning = true;
    m_paused = false;
    m_stopped = false;
    m_services.notifications.post(RunningContinued{});
    m_buttons.showScanning(canPause);
    showButtons();
}

void ScanController::prepareInterfaceForScan() {
    beginScan(true);
    m_services.defaults.setString(coordinator::kLastScannedOn, m_helpers.today());
}

void ScanController::prepareInterfaceForAnaliz() { beginScan(false); }

void ScanController::pauseScan() {
    m_services.log.log("Pause button click");
    m_paused = !m_paused;
    if (m_paused)
        m_services.notifications.post(RunningPaused{});
    else
        m_services.notifications.post(RunningContinued{});
    m_buttons.showPaused(m_paused);
    showButtons();
}

void ScanController::stopScan() {
    m_services.log.log("Stop scan button click");
    if (m_helpers.reports.confirmsStoppingScan())
        stopScanActually();
}

void ScanController::stopScanActually() {
    stopRun();
    finishScan();
}

void ScanController::stopRemoval() {
    m_services.log.log("Stop remove button click");
    stopRun();
}

void ScanController::stopRun() {
    m_stopped = true;
    m_buttons.showStopping();
    showButtons();
    m_paused = false;
    m_stopping = true;
    m_services.notifications.post(RunningStopped{});
}

void ScanController::finishScan() {
    if (ifScanRunning() || !m_scanning)
        return;
    joinScanThreads();
    m_scanning = false;
    m_buttons.showIdle(m_workMode);
    enableRemoveButton();
    m_stopping = false;
    m_helpers.reports.scanIsFinished(foundSize());
    goesOnAfterRun();
}

void ScanController::joinScanThreads() {
    for (const auto& module : m_modules)
        module->joinScanThread();
}

bool ScanController::goesOnAfterRun() {
    if (m_terminating) {
        if (m_mainView)
            m_mainView->terminate();
        return false;
    }
    m_helpers.reports.requestUserAttention();
    return true;
}

// Removing

void ScanController::remove() {
    m_services.log.log("Remove button click");
    if (filesFound() == 0)
        m_helpers.reports.systemIsClean();
    else if (filesFoundInEnabled() == 0)
        m_helpers.reports.nothingToClean();
    else
        startRemoveProcess();
}

void ScanController::startRemoveProcess() {
    // A removal under way keeps its own figures: asking for a second one changes nothing. Nor does one begin during a
    // scan: it would take what the scan has yet to find and nobody has seen.
    if (m_removing || ifScanRunning())
        return;
    if (m_removeThread.joinable())
        m_removeThread.join();
    joinScanThreads();  // here and not by the removal's thread: the scan's last message may be waiting for us
    refreshInterface(); // that message would have done so, and the rows say what takes part
    m_helpers.statistics.startRun();
    m_helpers.authorisation.startRun();
    prepareInterfaceForRemoval();
    m_removeThread = std::jthread([this] { startGlobalRemoveThread(); });
}

void ScanController::uninstallWith(const std::vector<ADScanController*>& modules) {
    if (m_removing || ifScanRunning())
        return;
    if (m_removeThread.joinable())
        m_removeThread.join();
    joinScanThreads();
    m_helpers.statistics.startRun();
    m_helpers.authorisation.startRun();
    prepareInterfaceForRemoval();
    m_removeThread = std::jthread([this, modules] {
        try {
            for (auto* module : modules) {
                if (!m_stopped)
                    module->startClean();
            }
        } catch (const std::exception& exception) {
            m_services.log.log(formatText("[Global Clean] Exception occured: %@", {exception.what()}));
        }
        m_services.mainThread.runAndWait([this] { finishUninstallation(); });
    });
}

void ScanController::prepareInterfaceForRemoval() {
    m_stopped = false;
    m_stopping = false;
    m_paused = false;
    m_helpers.removals.startRun();
    m_services.notifications.post(RunningContinued{});
    m_removing = true;
    m_buttons.showRemoving();
    showButtons();
}

void ScanController::startGlobalRemoveThread() {
    const std::unique_lock lock(m_cleanLock, std::try_to_lock);
    if (!lock.owns_lock())
        return;
    for (const auto& module : m_modules)
        module->prepareForGlobalClean();
    try {
        for (const auto& row : m_rows) {
            if (m_stopped)
                break;
            // What an uninstaller lists goes when "Uninstall" is pressed and never along with something else.
            auto* module = row->correspondingScanController();
            if (row->checked() && module && module->parts().front()->workMode() == WorkMode::Cleaner)
                module->startClean();
        }
    } catch (const std::exception& exception) {
        m_services.log.log(formatText("[Global Clean] Exception occured: %@", {exception.what()}));
    }
    m_services.mainThread.runAndWait([this] { finishRemoval(); });
}

void ScanController::updateInterfaceAfterRemoval() {
    m_helpers.removals.finishRun();
    m_stopping = false;
    m_removing = false;
    m_buttons.showIdle(m_workMode);
    enableRemoveButton();
    if (const auto saved = m_services.defaults.synchronize(); !saved)
        m_services.log.log(saved.error().message());
}

void ScanController::finishRemoval() {
    if (std::ranges::any_of(m_modules, [](const auto& module) { return module->ifCleanRunning(); }))
        return;
    updateInterfaceAfterRemoval();
    if (!goesOnAfterRun())
        return;
    refreshInterface();
    m_helpers.reports.cleanIsFinished(m_helpers.statistics.currentRemovedAmountOfSpace(),
                                      m_helpers.removals.couldntRemoveSomething());
}

void ScanController::uninstall() {
    m_services.log.log("Uninstall button clicked");
    m_helpers.removals.startRun();
    auto* module = m_selectedRow < m_rows.size() ? m_rows[m_selectedRow]->correspondingScanController() : nullptr;
    if (module && module->shownController().ifAnyEnabled())
        module->startUninstallation();
    else
        m_helpers.reports.nothingToUninstall();
}

void ScanController::finishUninstallation() {
    if (std::ranges::any_of(m_modules, [](const auto& module) { return module->ifCleanRunning(); }))
        return;
    updateInterfaceAfterRemoval();
    if (!goesOnAfterRun())
        return;
    refreshInterface();
    m_helpers.reports.uninstallationIsFinished(m_helpers.removals.couldntRemoveSomething());
}

void ScanController::authentificate() { m_helpers.authorisation.authentificate(); }

// For modules

bool ScanController::authorisationDemanded() {
    return m_helpers.authorisation.demanded([this] { stopRun(); });
}

bool ScanController::tryToRemoveFileAtPath(const std::string& path) {
    return m_helpers.removals.tryToRemoveFileAtPath(path);
}

bool ScanController::tryToSecurelyRemoveFileAtPath(const std::string& path) {
    return m_helpers.removals.tryToSecurelyRemoveFileAtPath(path);
}

bool ScanController::tryToRemoveAllFilesInDirectory(const std::string& path) {
    return m_helpers.removals.tryToRemoveAllFilesInDirectory(path);
}

bool ScanController::tryToEmptyFileAtPath(const std::string& path) {
    return m_helpers.removals.tryToEmptyFileAtPath(path);
}

void ScanController::couldntRemove(const std::string& path, const std::string& reason) {
    if (!m_stopped) // who stopped the run knows that things stay
        m_helpers.removals.failed(path, {ErrorKind::PermissionDenied, path, reason});
}

IgnoreList& ScanController::ignoreListController() { return m_helpers.ignoreList; }

} // namespace sweeply
