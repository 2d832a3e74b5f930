#pragma once

#include "appcore/WorkControl.h"
#include "engine/EngineEvents.h"
#include "engine/EngineServices.h"
#include "engine/RunFlags.h"
#include "engine/ScanControllerProtocol.h"
#include "engine/ScanDelegates.h"
#include "engine/tree/Node.h"
#include "platform/NotificationCenter.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace sweeply {

/// The base of every scan module: one category of junk, the tree of what was found of it, and the two runs over it.
///
/// A scan fills the tree on a thread of its own and never changes the disk; a clean walks the checked part on the
/// thread that calls startClean and removes. Subclasses fill in the hooks. Everything that changes the tree holds the
/// tree lock; nodes are taken out on the main thread.
///
/// States: idle -> scanning -> idle with results -> cleaning -> idle. Pause is orthogonal; a stop ends a run at its
/// next item.
class ADScanController : public ScanControllerProtocol, public WorkControl {
  public:
    explicit ADScanController(EngineServices services);
    /// A subclass that scans must call stopAndJoin() in its own destructor: the thread runs its hooks.
    ~ADScanController() override;
    ADScanController(const ADScanController&) = delete;
    ADScanController& operator=(const ADScanController&) = delete;

    /// Takes the module's stored switch over into the root's check mark, storing the default where there is none.
    /// Called once, by the subclass's constructor, when its hooks can be.
    void initUserDefaults();

    /// The stored switches changed: takes this module's over while it shows no results.
    virtual void preffernecesUpdated();

    // Hooks

    /// The key of the module's switch in the preferences and of its items in the ignore list.
    [[nodiscard]] virtual std::string defaultsName() const { return "SetSomeDefaultNameForController"; }
    /// Does the module store its switch?
    [[nodiscard]] virtual bool needToSetUserDefalts() const { return false; }
    [[nodiscard]] virtual bool userDefaultsDefaultValue() const { return true; }
    [[nodiscard]] virtual bool priviligesNeededToClean() const { return false; }
    /// May this subtree be cleaned now?
    virtual bool isRootNodeCleanable(Node&) { return true; }
    /// Adds one dropped item to the results.
    virtual void analyzeFile(const std::string&) {}
    /// Should the list refresh this module's row on a timer while it works?
    [[nodiscard]] virtual bool updateTimerNeeded() const { return true; }
    [[nodiscard]] virtual bool shouldCleanApplication(const std::string&) { return true; }
    [[nodiscard]] bool shouldRespondToDragEvents() const override { return false; }
    [[nodiscard]] WorkMode workMode() const override { return WorkMode::Cleaner; }

    /// The modules that scan for this one: itself, unless it only stands for others.
    [[nodiscard]] virtual std::vector<ADScanController*> parts() { return {this}; }

    // Collaborators, not owned; set before the first run

    void setDelegate(ScanDelegate* delegate) { m_delegate = delegate; }
    [[nodiscard]] ScanDelegate* delegate() const { return m_delegate; }
    void setViewDelegate(ScanViewDelegate* viewDelegate) { m_viewDelegate = viewDelegate; }
    [[nodiscard]] ScanViewDelegate* viewDelegate() const { return m_viewDelegate; }

    // The tree

    [[nodiscard]] const Node::Pointer& rootNode() const { return m_rootNode; }
    void addChildNode(Node::Pointer node);
    [[nodiscard]] std::size_t childrenCount() const;
    [[nodiscard]] Node::Pointer objectAtIndex(std::size_t index) const;
    [[nodiscard]] virtual bool ifAnyEnabled() const;
    [[nodiscard]] virtual std::size_t filesFoundInEnabled() const;
    [[nodiscard]] std::uint32_t numberOfEnabledObjects() const;
    void setEveryObjectEnabled(bool enabled) override;
    /// Is an item at `path` among the leaves below `node`?
    [[nodiscard]] bool ifAlreadyAddedFile(const std::string& path, const Node& node) const;
    /// Tells the views, once however often it is called before they look.
    void rootNodeChanged();
    void updateInterfaceAndWaitUntilDone(bool wait);
    /// Main thread.
    void removeNodeOnMainThread(Node& node);
    void removeNode(Node& node, bool andWaitUntilDone);

    // Figures

    [[nodiscard]] std::uint64_t totalSize() const override;
    [[nodiscard]] std::size_t filesFound() const override;
    [[nodiscard]] std::string statusText() const override;
    [[nodiscard]] float procentDone() const override;
    /// The work announced: units while scanning, bytes while cleaning, 0 otherwise.
    [[nodiscard]] virtual std::uint64_t totalProcentage() const;
    [[nodiscard]] virtual std::uint64_t totalProcentageDone() const;
    void incFoundObjectsCount() { ++m_countOfFilesFound; }
    void decFoundObjectsCount() { --m_countOfFilesFound; }
    void incTotalProcentageBy(std::uint32_t units) { m_totalProcentage += units; }
    void setTotalProcentage(std::uint32_t units) { m_totalProcentage = units; }
    void incProgress() { incProgressBy(1); }
    void incProgressBy(std::uint32_t units);
    void incTotalSizeDoneWithInt(std::uint64_t bytes);

    // Runs

    [[nodiscard]] bool ifScanRunning() const override { return m_scanRunning; }
    [[nodiscard]] bool ifCleanRunning() const override { return m_cleanRunning; }
    [[nodiscard]] bool stopped() const override { return m_flags.stopped(); }
    [[nodiscard]] bool ifPaused() const override { return m_flags.paused(); }
    virtual void setStopped(bool stopped) { m_flags.setStopped(stopped); }
    virtual void setPaused(bool paused) { m_flags.setPaused(paused); }
    void waitWhilePaused() override { m_flags.waitWhilePaused(); }
    [[nodiscard]] std::stop_token stopToken() const override { return m_flags.stopToken(); }
    /// Rests as long as a module should after each item.
    void sleepAfterItem();
    /// Logs what could not be read and tells whoever shows it.
    void reportProblem(const Error& error);
    /// Says what the worker deals with now, for whoever shows progress.
    void setCurrentItem(std::string_view path);
    [[nodiscard]] virtual std::string currentItem() const;
    void pauseRun() { m_flags.setPaused(true); }
    /// Also takes back a stop: the coordinator says so before each run.
    void continueRun();
    void stopRun();

    void startScan() override;
    void startClean() override;
    /// Files dropped on the module: analysed on a thread of its own. Ignored during a scan of the module and during any
    /// removal, which could otherwise reach what nobody has looked at yet.
    void receiveDragData(const std::vector<std::string>& paths);
    void prepareForScan() override;
    void finishScan();
    virtual void prepareForGlobalClean();
    void prepareForClean() override;
    virtual void finishClean();
    /// Waits for the end of the last scan's thread. Main thread or the cleaning one.
    virtual void joinScanThread();
    /// Ends whatever runs and waits for it.
    void stopAndJoin();

  protected:
    /// The scan itself, on its own thread.
    virtual void scanThread() { prepareForScan(); }
    /// Removes the node's item; true on success.
    virtual bool cleanThisNode(Node&) { return false; }

    bool tryToRemoveFileAtPath(const std::string& path);
    bool tryToSecurelyRemoveFileAtPath(const std::string& path);
    [[nodiscard]] const EngineServices& services() const { return m_services; }

  private:
    [[nodiscard]] virtual std::string className() const = 0;
    void scanThreadProtected();
    void receiveDragDataThread(const std::vector<std::string>& paths);
    void cleanThread();
    void cleanChildren();
    void recursivlyCleanNode(Node& node);
    /// Removes a leaf's item and takes the node out; counts its bytes as handled either way.
    void cleanLeaf(Node& node);
    [[nodiscard]] std::string rootSizeText() const;
    /// Does this module or the coordinator clean? Then progress is that of the clean, even while others work.
    [[nodiscard]] bool ifAnyCleanRunning() const;
    /// Not run any more once this module is gone.
    void runOnMainThreadLater(std::function<void()> call);
    void tellDelegate(void (ScanDelegate::*message)(ADScanController&));

    EngineServices m_services;
    ScanDelegate* m_delegate = nullptr;
    ScanViewDelegate* m_viewDelegate = nullptr;
    Node::Pointer m_rootNode; ///< its contents are guarded by the tree lock

    /// Calls that wait for the main thread look whether this is still there; it goes on the main thread.
    std::shared_ptr<const bool> m_isAlive = std::make_shared<const bool>(true);

    RunFlags m_flags;
    std::atomic<bool> m_scanRunning{false};
    std::atomic<bool> m_cleanRunning{false};
    std::atomic<bool> m_viewUpdatePending{false};
    std::atomic<std::uint32_t> m_countOfFilesFound{0};
    std::atomic<std::uint64_t> m_totalSizeAtCleanStart{0}; ///< bytes
    std::atomic<std::uint64_t> m_totalSizeDone{0};         ///< bytes
    std::atomic<std::uint32_t> m_totalProcentage{0};       ///< work units
    std::atomic<std::uint32_t> m_totalProcentDone{0};      ///< work units

    mutable std::mutex m_currentItemMutex;
    std::string m_currentItem; ///< guarded by m_currentItemMutex

    std::vector<NotificationCenter::Subscription> m_subscriptions;
    std::jthread m_thread; ///< of the last scan; started and joined by the main thread
};

} // namespace sweeply
