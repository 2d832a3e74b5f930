#pragma once

#include "engine/LoneWork.h"
#include "engine/ModuleRows.h"
#include "engine/RemovalRun.h"
#include "engine/RunRequests.h"
#include "engine/ScanCoordinator.h"
#include "engine/WindowState.h"
#include "platform/NotificationCenter.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace sweeply {

class ChangeRuns;
class RunReports;

/// The one coordinator: runs scans over all modules at once and removals over one after the other, pauses and stops
/// them, and reports how a run ended.
///
/// Actions and what they change belong to the main thread; figures may be asked for on any. A removal runs on a thread
/// of its own, one at a time: a second one asked for meanwhile is dropped, and so is one asked for during a scan.
class ScanController final : public ScanCoordinator {
  public:
    /// What the coordinator leaves to others; all outlive it.
    struct Helpers {
        ChangeGate& gate;
        ChangeRuns& runs;
        AuthorisationSession& authorisation;
        RunReports& reports;
        SpaceStatistics& statistics;
        IgnoreList& ignoreList;
        /// Today, as the person writes it.
        std::function<std::string()> today;
    };

    ScanController(EngineServices services, Helpers helpers);
    ~ScanController() override;

    // Building; before the first run

    /// In the order in which modules scan and clean.
    void addModule(std::unique_ptr<ScanObject> row, std::unique_ptr<ADScanControllerView> module) {
        m_rows.add(std::move(row), std::move(module));
    }
    void setMainView(MainView* view) { m_window.setView(view); }
    [[nodiscard]] const std::vector<std::unique_ptr<ScanObject>>& rows() const { return m_rows.rows(); }
    [[nodiscard]] ADScanControllerView* moduleForViewCode(std::uint8_t viewCode) const {
        return m_rows.moduleForViewCode(viewCode);
    }

    // Actions

    void startScan();
    void pauseScan();
    void stopScan();
    /// Without asking.
    void stopScanActually();
    void stopRemoval();
    void remove();
    void uninstall();
    void changeSecureEraseValue() { m_useSecureErase = !m_useSecureErase; }
    void setUseSecureErase(bool use) { m_useSecureErase = use; }
    void authentificate();
    /// For what changes files and is no removal: does `work` on a thread of its own, while nothing else can begin, and
    /// then `ended` on the main thread. False, and nothing is done, while anything runs. Who leaves the program
    /// meanwhile has the work asked to stop, and waits for it.
    bool doAlone(LoneWork::Work work, std::function<void()> ended);
    /// The row whose module uninstall() asks.
    void setSelectedRow(std::size_t row) { m_selectedRow = row; }
    /// Takes the stored switches over into the list.
    void preferencesChanged();

    // Asked by the faces

    [[nodiscard]] bool isScanning() const { return m_scanning; }
    [[nodiscard]] bool isRemoving() const { return m_removal.isRunning(); }
    [[nodiscard]] bool isPaused() const { return m_requests.isPaused(); }
    [[nodiscard]] bool isStopped() const { return m_requests.isStopped(); }
    [[nodiscard]] bool ifAnyEnabled() const { return m_rows.ifAnyEnabled(); }
    [[nodiscard]] WorkMode workMode() const { return m_window.workMode(); }
    [[nodiscard]] bool useSecureErase() const { return m_useSecureErase; }
    [[nodiscard]] const ActionButtons& actionButtons() const { return m_window.buttons(); }
    [[nodiscard]] std::uint64_t totalSize() const { return m_rows.totalSize(); }
    /// What a removal would free.
    [[nodiscard]] std::uint64_t foundSize() const { return m_rows.foundSize(); }
    [[nodiscard]] std::uint64_t filesFound() const { return m_rows.filesFound(); }
    [[nodiscard]] std::uint64_t filesFoundInEnabled() const { return m_rows.filesFoundInEnabled(); }
    [[nodiscard]] std::uint64_t filesFoundForRemove() const { return m_rows.filesFoundForRemove(); }
    /// 0 to 1; no module counts for more than the work it announced.
    [[nodiscard]] float totalProcentDone() const { return m_rows.totalProcentDone(); }
    /// When the last scan was, in words; empty before the first.
    [[nodiscard]] std::string lastScannedOn() const;

    // Asked by modules

    [[nodiscard]] bool ifScanRunning() const override { return m_rows.ifScanRunning(); }
    [[nodiscard]] bool ifCleanRunning() const override {
        return m_removal.isRunning() || m_alone.isRunning() || m_rows.ifCleanRunning();
    }
    void changeViewTo(std::uint8_t viewCode) override { m_window.view().changeViewTo(viewCode); }
    void gotoCleanerMode() override;
    void gotoUninstallerMode() override;
    void prepareInterfaceForScan() override;
    void finishScan() override;
    void refreshInterface() override;
    void uninstallWith(const std::vector<ADScanController*>& modules) override;
    void setTerminating(bool terminating) override { m_terminating = terminating; }
    bool authorisationDemanded() override;
    ChangeGate& gate() override { return m_helpers.gate; }
    void couldntRemove(const ChangeRequest& request, const std::string& reason, ErrorKind kind) override;
    IgnoreList& ignoreListController() override { return m_helpers.ignoreList; }

  private:
    void beginScan(bool canPause);
    /// False while a run is under way, which a removal would disturb.
    [[nodiscard]] bool isFreeForRemoval();
    /// Does `work` on the removal's thread, and has `report` tell the person how it ended.
    void startRemoval(const std::string& command, std::function<void()> work, std::function<void()> report);
    void finishRemoval(const std::function<void()>& report);
    void stopRun();
    /// Quits if that is wanted; otherwise asks for the person's attention. True when it goes on.
    bool goesOnAfterRun();
    [[nodiscard]] bool hasSomethingToRemove() const;

    EngineServices m_services;
    Helpers m_helpers;
    RunRequests m_requests;
    WindowState m_window;
    std::size_t m_selectedRow = 0;
    bool m_terminating = false;
    std::atomic<bool> m_useSecureErase{false}; ///< read while removing
    std::atomic<bool> m_scanning{false};
    ModuleRows m_rows;
    RemovalRun m_removal;
    LoneWork m_alone;
    NotificationCenter::Subscription m_analysing;
};

} // namespace sweeply
