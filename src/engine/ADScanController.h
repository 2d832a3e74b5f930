#pragma once

#include "engine/EngineEvents.h"
#include "engine/ModuleHooks.h"
#include "engine/ModuleResults.h"
#include "engine/ModuleRun.h"
#include "platform/NotificationCenter.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace sweeply {

/// The base of every scan module: one category of junk, and the two runs over it.
///
/// A scan fills the tree on a thread of its own and never changes the disk; a clean walks the checked part on the
/// thread that calls startClean and removes. Subclasses fill in the hooks.
///
/// Its switch says whether it takes part in a scan. The check marks of its results say what a removal takes, and never
/// change the switch; only where there are no results yet is the root's mark that of the switch.
///
/// States: idle -> scanning -> idle with results -> cleaning -> idle. Pause is orthogonal; a stop ends a run at its
/// next item.
class ADScanController : public ModuleResults, public ModuleHooks, public ModuleRun {
  public:
    explicit ADScanController(EngineServices services);
    /// A subclass that scans must call stopAndJoin() in its own destructor: the thread runs its hooks.
    ~ADScanController() override;

    /// Takes the module's stored switch over, storing the default where there is none. Called once, by the subclass's
    /// constructor, when its hooks can be.
    void initUserDefaults();
    /// The stored switches changed: takes this module's over.
    virtual void preffernecesUpdated();
    [[nodiscard]] bool takesPartInScan() const { return m_takesPartInScan; }
    /// Until the next time that the stored switches change; stores nothing.
    void setTakesPartInScan(bool takesPart);

    /// Not owned; set before the first run.
    void setDelegate(ScanDelegate* delegate) { m_delegate = delegate; }
    [[nodiscard]] ScanDelegate* delegate() const { return m_delegate; }

    [[nodiscard]] bool shouldRespondToDragEvents() const override { return false; }
    [[nodiscard]] WorkMode workMode() const override { return WorkMode::Cleaner; }
    /// The modules that scan for this one: itself, unless it only stands for others.
    [[nodiscard]] virtual std::vector<ADScanController*> parts() { return {this}; }

    [[nodiscard]] float procentDone() const override;
    /// The work announced: units while scanning, bytes while cleaning, 0 otherwise.
    [[nodiscard]] virtual std::uint64_t totalProcentage() const;
    [[nodiscard]] virtual std::uint64_t totalProcentageDone() const;

    /// What is to become of a node's item, as it was found. Any thread.
    [[nodiscard]] ChangeRequest requestFor(const Node& node, Operation operation) const;
    /// Removes the item; what else is to become of it a module says itself.
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override {
        return requestFor(node, Operation::Remove);
    }

    // Runs

    [[nodiscard]] bool ifScanRunning() const override { return m_scanRunning; }
    [[nodiscard]] bool ifCleanRunning() const override { return m_cleanRunning; }
    /// Has a scan ended since the start? Until then nobody knows what there is.
    [[nodiscard]] bool hasLooked() const { return m_hasLooked; }
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
    void scanThread() override { prepareForScan(); }
    ChangeOutcome cleanThisNode(Node& node) override { return change(changeFor(node)); }

    ChangeOutcome change(const ChangeRequest& request);
    /// Analyses what was dropped, on its thread.
    virtual void analyzeFiles(const std::vector<std::string>& paths);

  private:
    void startThread(std::function<void()> work);
    void logExceptionsOf(const std::function<void()>& work);
    void cleanThread();
    /// Does this module or the coordinator clean? Then progress is that of the clean, even while others work.
    [[nodiscard]] bool ifAnyCleanRunning() const;
    void tellDelegate(void (ScanDelegate::*message)(ADScanController&));

    ScanDelegate* m_delegate = nullptr;
    std::atomic<bool> m_takesPartInScan{true};
    std::atomic<bool> m_scanRunning{false};
    std::atomic<bool> m_cleanRunning{false};
    std::atomic<bool> m_hasLooked{false};
    std::vector<NotificationCenter::Subscription> m_subscriptions;
    std::jthread m_thread; ///< of the last scan; started and joined by the main thread
};

} // namespace sweeply
