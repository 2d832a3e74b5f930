#include "engine/ScanController.h"

#include "appcore/changes/ChangeGate.h"
#include "engine/AuthorisationSession.h"
#include "engine/CoordinatorPreferences.h"
#include "engine/EngineEvents.h"
#include "engine/RunReports.h"
#include "engine/SpaceStatistics.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/ReadProblems.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <utility>

namespace sweeply {

ScanController::ScanController(EngineServices services, Helpers helpers)
    : m_services(services), m_helpers(std::move(helpers)), m_requests(services.notifications),
      m_removal(m_services, m_helpers.runs, m_helpers.authorisation, m_helpers.statistics),
      m_alone(services.mainThread), m_analysing(services.notifications.observe<PrepareInterfaceForAnaliz>(
                                        [this](const auto&) { beginScan(false); })) {
    m_helpers.gate.setStop([this] { stopRun(); });
}

ScanController::~ScanController() {
    for (const auto& module : m_rows.modules())
        module->stopRun();
    m_services.notifications.post(RunningStopped{});
    m_removal.join();
    m_alone.stopAndJoin();
    for (const auto& module : m_rows.modules())
        module->stopAndJoin();
}

std::string ScanController::lastScannedOn() const {
    return m_services.defaults.stringForKey(coordinator::kLastScannedOn).value_or(std::string());
}

// The window

void ScanController::gotoUninstallerMode() {
    if (workMode() != WorkMode::Uninstaller)
        m_window.showMode(WorkMode::Uninstaller);
}

void ScanController::gotoCleanerMode() {
    if (workMode() == WorkMode::Cleaner)
        return;
    m_window.showMode(WorkMode::Cleaner);
    if (!ifScanRunning() && !ifCleanRunning() && !m_requests.isStopping())
        m_window.offerScan(hasSomethingToRemove());
}

bool ScanController::hasSomethingToRemove() const {
    return (workMode() == WorkMode::Uninstaller ? filesFound() : filesFoundForRemove()) > 0;
}

void ScanController::refreshInterface() {
    m_rows.takeMarksFromModules();
    m_window.view().reloadModuleList();
}

void ScanController::preferencesChanged() {
    m_rows.takeMarksFromPreferences(m_services.defaults);
    for (const auto& module : m_rows.modules())
        m_services.mainThread.runLater([module = module.get()] { module->preffernecesUpdated(); });
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
    m_services.problems.startOver();
    prepareInterfaceForScan();
    for (auto* module : m_rows.modulesToScan())
        module->startScan();
}

void ScanController::beginScan(bool canPause) {
    m_scanning = true;
    m_requests.start();
    m_window.showScanning(canPause);
}

void ScanController::prepareInterfaceForScan() {
    beginScan(true);
    m_services.defaults.setString(coordinator::kLastScannedOn, m_helpers.today());
}

void ScanController::pauseScan() {
    m_services.log.log("Pause button click");
    m_requests.togglePause();
    m_window.showPaused(isPaused());
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
    m_requests.stop();
    m_window.showStopping();
}

void ScanController::finishScan() {
    if (ifScanRunning() || !m_scanning)
        return;
    m_rows.joinScanThreads();
    m_scanning = false;
    refreshInterface(); // switches may have changed meanwhile
    m_window.showIdle(hasSomethingToRemove());
    m_requests.finish();
    m_helpers.reports.scanIsFinished(foundSize());
    goesOnAfterRun();
}

bool ScanController::goesOnAfterRun() {
    if (m_terminating) {
        m_window.view().terminate();
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
    else if (isFreeForRemoval()) {
        startRemoval(
            "clean", [this] { m_rows.cleanWhatIsChecked(m_requests); },
            [this] {
                m_helpers.reports.cleanIsFinished(m_helpers.statistics.currentRemovedAmountOfSpace(),
                                                  m_helpers.gate.couldntRemoveSomething());
            });
    }
}

bool ScanController::isFreeForRemoval() {
    // A removal under way keeps its own figures: asking for a second one changes nothing. Nor does one begin during a
    // scan: it would take what the scan has yet to find and nobody has seen.
    if (isRemoving() || m_alone.isRunning() || ifScanRunning())
        return false;
    m_rows.joinScanThreads(); // here and not by the removal's thread: the scan's last message may be waiting for us
    return true;
}

void ScanController::uninstallWith(const std::vector<ADScanController*>& modules) {
    if (!isFreeForRemoval())
        return;
    startRemoval(
        "uninstall",
        [this, modules] {
            for (auto* module : modules) {
                if (!isStopped())
                    module->startClean();
            }
        },
        [this] { m_helpers.reports.uninstallationIsFinished(m_helpers.gate.couldntRemoveSomething()); });
}

void ScanController::startRemoval(const std::string& command, std::function<void()> work,
                                  std::function<void()> report) {
    if (const auto begun = m_removal.begin(command); !begun) {
        m_helpers.gate.stays({}, begun.error().message(), begun.error().kind);
        m_services.notifications.post(RemovalEnded{});
        report();
        return;
    }
    m_requests.start();
    m_window.showRemoving();
    m_removal.start(std::move(work), [this, report = std::move(report)] { finishRemoval(report); });
}

void ScanController::finishRemoval(const std::function<void()>& report) {
    if (m_rows.ifCleanRunning())
        return;
    m_removal.finish();
    m_requests.finish();
    m_window.showIdle(hasSomethingToRemove());
    if (!goesOnAfterRun())
        return;
    refreshInterface();
    m_services.notifications.post(RemovalEnded{});
    report();
}

bool ScanController::doAlone(LoneWork::Work work, std::function<void()> ended) {
    if (!isFreeForRemoval())
        return false;
    m_window.showStopping(); // nothing can be begun, and nothing stopped
    m_alone.start(std::move(work), [this, ended = std::move(ended)] {
        m_window.showIdle(hasSomethingToRemove());
        ended();
    });
    return true;
}

void ScanController::uninstall() {
    m_services.log.log("Uninstall button clicked");
    if (m_alone.isRunning())
        return;
    if (!isRemoving())
        m_helpers.gate.startRun();
    auto* module = m_rows.moduleOfRow(m_selectedRow);
    if (module && module->shownController().ifAnyEnabled())
        module->startUninstallation();
    else
        m_helpers.reports.nothingToUninstall();
}

void ScanController::authentificate() { m_helpers.authorisation.authentificate(); }

// For modules

bool ScanController::authorisationDemanded() {
    return m_helpers.authorisation.demanded([this] { stopRun(); });
}

void ScanController::couldntRemove(const ChangeRequest& request, const std::string& reason, ErrorKind kind) {
    if (!isStopped()) // who stopped the run knows that things stay
        m_helpers.gate.stays(request, reason, kind);
}

} // namespace sweeply
