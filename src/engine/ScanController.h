#pragma once

#include "engine/ADScanControllerView.h"
#include "engine/ActionButtons.h"
#include "engine/ScanCoordinator.h"
#include "engine/ScanObject.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace sweeply {

class AuthorisationSession;
class IgnoreList;
class RemovalPrimitives;
class RunReports;
class SpaceStatistics;

/// What shows the coordinator's state: the main window, or nothing. Main thread.
class MainView {
  public:
    virtual ~MainView() = default;

    virtual void reloadModuleList() {}
    virtual void actionButtonsChanged(const ActionButtons&) {}
    virtual void changeViewTo(std::uint8_t) {}
    /// The run that kept a wanted quit waiting is over.
    virtual void terminate() {}
};

/// The one coordinator: it owns the modules and the rows of their list, runs scans over all of them at once and
/// removals over one after the other, adds up their figures and reports how a run ended.
///
/// Actions and what they change belong to the main thread; figures may be asked for on any. A removal runs on a thread
/// of its own, one at a time: a second one asked for meanwhile is dropped, and so is one asked for during a scan.
class ScanController final : public ScanCoordinator {
  public:
    /// What the coordinator leaves to others; all outlive it.
    struct Helpers {
        RemovalPrimitives& removals;
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
    void addModule(std::unique_ptr<ScanObject> row, std::unique_ptr<ADScanControllerView> module);
    void setMainView(MainView* view) { m_mainView = view; }
    [[nodiscard]] const std::vector<std::unique_ptr<ScanObject>>& rows() const { return m_rows; }
    [[nodiscard]] ADScanControllerView* moduleForViewCode(std::uint8_t viewCode) const;

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
    /// The row whose module uninstall() asks.
    void setSelectedRow(std::size_t row) { m_selectedRow = row; }
    /// Takes the stored switches over into the list.
    void preferencesChanged();

    // Asked by the faces

    [[nodiscard]] bool isScanning() const { return m_scanning; }
    [[nodiscard]] bool isRemoving() const { return m_removing; }
    [[nodiscard]] bool isPaused() const { return m_paused; }
    [[nodiscard]] bool isStopped() const { return m_stopped; }
    [[nodiscard]] bool ifAnyEnabled() const;
    [[nodiscard]] WorkMode workMode() const { return m_workMode; }
    [[nodiscard]] bool useSecureErase() const { return m_useSecureErase; }
    [[nodiscard]] const ActionButtons& actionButtons() const { return m_buttons; }
    [[nodiscard]] std::uint64_t totalSize() const;
    /// What a removal would free.
    [[nodiscard]] std::uint64_t foundSize() const;
    [[nodiscard]] std::uint64_t filesFound() const;
    [[nodiscard]] std::uint64_t filesFoundInEnabled() const;
    [[nodiscard]] std::uint64_t filesFoundForRemove() const;
    /// 0 to 1; no module counts for more than the work it announced.
    [[nodiscard]] float totalProcentDone() const;
    /// When the last scan was, in words; empty before the first.
    [[nodiscard]] std::string lastScannedOn() const;

    // Asked by modules

    [[nodiscard]] bool ifScanRunning() const override;
    [[nodiscard]] bool ifCleanRunning() const override;
    void changeViewTo(std::uint8_t viewCode) override;
    void gotoCleanerMode() override;
    void gotoUninstallerMode() override;
    void prepareInterfaceForScan() override;
    void finishScan() override;
    void refreshInterface() override;
    void uninstallWith(const std::vector<ADScanController*>& modules) override;
    void setTerminating(bool terminating) override { m_terminating = terminating; }
    bool authorisationDemanded() override;
    bool tryToRemoveFileAtPath(const std::string& path) override;
    bool tryToSecurelyRemoveFileAtPath(const std::string& path) override;
    bool tryToRemoveAllFilesInDirectory(const std::string& path) override;
    bool tryToEmptyFileAtPath(const std::string& path) override;
    void couldntRemove(const std::string& path, const std::string& reason) override;
    IgnoreList& ignoreListController() override;
    void finishUninstallation();

  private:
    template<typename Figure>
    [[nodiscard]] std::uint64_t sumOf(Figure figure) const;
    void prepareInterfaceForAnaliz();
    void beginScan(bool canPause);
    void joinScanThreads();
    void prepareInterfaceForRemoval();
    void startRemoveProcess();
    void startGlobalRemoveThread();
    void finishRemoval();
    void updateInterfaceAfterRemoval();
    void enableRemoveButton();
    void showButtons();
    void stopRun();
    /// Quits if that is wanted; otherwise asks for the person's attention. True when it goes on.
    bool goesOnAfterRun();

    EngineServices m_services;
    Helpers m_helpers;
    MainView* m_mainView = nullptr;
    std::vector<std::unique_ptr<ADScanControllerView>> m_modules;
    std::vector<std::unique_ptr<ScanObject>> m_rows;
    ActionButtons m_buttons;
    WorkMode m_workMode = WorkMode::Cleaner;
    std::size_t m_selectedRow = 0;
    bool m_terminating = false;
    std::atomic<bool> m_useSecureErase{false}; ///< read while removing

    std::atomic<bool> m_paused{false};
    std::atomic<bool> m_stopped{true};
    std::atomic<bool> m_stopping{false};
    std::atomic<bool> m_scanning{false};
    std::atomic<bool> m_removing{false};

    std::mutex m_cleanLock; ///< held by the one removal thread
    std::jthread m_removeThread;
    NotificationCenter::Subscription m_analysing;
};

} // namespace sweeply
