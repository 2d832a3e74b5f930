#pragma once

#include "appcore/changes/BinarySlimmer.h"
#include "appcore/changes/Change.h"
#include "appcore/changes/FileChanges.h"
#include "appcore/changes/ItemKeeper.h"
#include "appcore/changes/KeptItem.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace sweeply {

class DiskSizes;
class LaunchItems;
class LoginItems;
class PackageManager;
class SystemLog;
struct FolderConstants;

/// Does a run keep what cannot be made again?
enum class Keeping : std::uint8_t {
    Off,
    On,              ///< what cannot be kept stays where it is
    OnWherePossible, ///< what cannot be kept goes for good: somebody was told and said yes
};

/// How a run keeps whose person was told what cannot be kept, and said yes.
[[nodiscard]] inline Keeping keepingDespite(const std::vector<Error>& obstacles) {
    return obstacles.empty() ? Keeping::On : Keeping::OnWherePossible;
}

/// The one way in which anything of a target is changed. Every request is held against what was seen, written down,
/// carried out, and its outcome counted and written down; whatever that is, one line about what stays is logged.
///
/// perform() belongs to the thread that removes, one at a time; the rest to any thread.
class ChangeGate final {
  public:
    struct Services {
        FileManager& files;
        const FolderConstants& folders;
        const DiskSizes& sizes;
        PrivilegedExecution& privileged;
        const ToolTable& tools;
        LoginItems& loginItems;
        const LaunchItems& launchItems;
        PackageManager& packages;
        SystemLog& log;
    };

    /// All outlive this.
    explicit ChangeGate(Services services);

    ChangeOutcome perform(const ChangeRequest& request);
    /// Counts an item that is left alone for another reason.
    ChangeOutcome stays(const ChangeRequest& request, const std::string& reason, ErrorKind kind = ErrorKind::Other);
    /// Counts an item of which somebody else found out what there is to say.
    ChangeOutcome leave(const ChangeRequest& request, ChangeOutcome outcome) {
        return reported(request, std::move(outcome));
    }
    /// What there is to say of an item that was listed once and is not any more: gone where nothing is left for the
    /// request to change, refused otherwise. Changes nothing. Any thread.
    [[nodiscard]] ChangeOutcome outcomeOfUnlisted(const ChangeRequest& request) const;

    /// Takes away what a kill left beside executables.
    void sweepSlimmings();

    // Runs

    /// A run starts: what the last one did is forgotten, and it is looked again which folders are protected. No change
    /// may be under way. Without a journal nothing is written down, and nothing kept.
    void startRun(ChangeJournal* journal = nullptr, Keeping keeping = Keeping::Off);
    /// The run is over: nothing of the volume is held any longer.
    void finishRun();
    /// Called when changes can no longer be written down, so that whoever sends them stops; on the thread that removes.
    void setStop(std::function<void()> stop) { m_stop = std::move(stop); }

    /// Does this run keep what cannot be made again?
    [[nodiscard]] bool isKeeping() const { return m_keeping != Keeping::Off; }
    /// Why an item could not be kept; empty where it could.
    [[nodiscard]] std::string reasonAgainstKeeping(const ChangeRequest& request) const;

    // What earlier runs kept; the gate's user writes that down

    /// Is it where it was put, and nowhere else?
    [[nodiscard]] bool isKept(const KeptItem& item, const std::string& folder) const;
    /// As ItemKeeper::moveBack; an entry of a list goes back into it, and a launch item is loaded again.
    Result<void> putBack(const KeptItem& item, const std::string& folder);
    /// Removes what is kept in a folder among what is kept for good.
    Result<void> purge(const std::string& folder) { return m_keeper.purge(folder); }

    // What the run did so far

    [[nodiscard]] std::vector<ChangeReport> reports() const;
    [[nodiscard]] ChangeSums sums() const;
    /// Did anything stay that was to go?
    [[nodiscard]] bool couldntRemoveSomething() const { return sums().failed > 0; }

  private:
    [[nodiscard]] ChangeOutcome change(const ChangeRequest& request);
    /// Is the item still what was seen? Gone and changed are outcomes of their own.
    [[nodiscard]] std::optional<ChangeOutcome> differenceFromSeen(const ChangeRequest& request) const;
    [[nodiscard]] bool isNothingLeft(const ChangeRequest& request) const;
    [[nodiscard]] ChangeOutcome overParts(const ChangeRequest& request, OutcomeKind done,
                                          Result<void> (FileChanges::*way)(const std::string&));
    [[nodiscard]] ChangeOutcome takeOffList(const ChangeRequest& request);
    [[nodiscard]] ChangeOutcome forgetReceipt(const ChangeRequest& request);
    [[nodiscard]] ChangeOutcome keep(const ChangeRequest& request);
    [[nodiscard]] std::vector<std::string> partsToKeep(const ChangeRequest& request) const;
    [[nodiscard]] ChangeOutcome withoutKeeping(ChangeRequest request);
    ChangeOutcome reported(const ChangeRequest& request, ChangeOutcome outcome);

    const Services m_services;
    FileChanges m_changes;
    BinarySlimmer m_slimmer;
    ItemKeeper m_keeper;
    std::function<void()> m_stop = [] {};
    ChangeJournal* m_journal = nullptr;
    std::uint32_t m_keptCount = 0;
    std::atomic<Keeping> m_keeping{Keeping::Off};

    mutable std::mutex m_mutex;
    std::vector<ChangeReport> m_reports; ///< guarded by m_mutex
    ChangeSums m_sums;                   ///< likewise
};

} // namespace sweeply
