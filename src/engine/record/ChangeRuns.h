#pragma once

#include "appcore/changes/ChangeGate.h"
#include "engine/record/RecordWriter.h"
#include "engine/record/RunArchive.h"
#include "platform/FileLock.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sweeply {

class NotificationCenter;
class SystemLog;
class UserDefaults;

/// A kept item, and by when it may go.
struct KeptEntry {
    std::string run;
    KeptItem item;
    std::string until;
};

/// What became of an item that a run kept.
enum class KeptStatus : std::uint8_t {
    Kept,
    Restored,
    Purged,
    HalfPurged, ///< a purge of it did not come to its end: to be purged again, and not to be put back
    Missing,    ///< neither kept any more nor in its place
    NotMoved,   ///< the run ended before that
};

/// One item of an undo: "restored", "occupied", "missing" or "failed".
struct UndoneItem {
    std::string path;
    std::string outcome;
    std::optional<std::string> reason = {};
    bool needsRights = false; ///< an administrator may put it back
};

/// The runs that change something of one user's, one at a time for all programs: their records, what they keep, and
/// the way back. One thread at a time; changes of the gate are sent between begin() and finish() alone.
class ChangeRuns final {
  public:
    struct Services {
        FileManager& files;
        const FolderConstants& folders;
        ChangeGate& gate;
        UserDefaults& defaults;
        NotificationCenter& notifications;
        SystemLog& log;
        std::string program; ///< its version
        std::string root;    ///< of what is changed, on this machine
        std::int64_t (*now)();
    };

    explicit ChangeRuns(Services services);

    /// What the next run does with what cannot be made again; without this the preferences decide.
    void setKeeping(Keeping keeping) { m_keeping = keeping; }
    [[nodiscard]] Keeping keeping() const;
    /// For how long what is kept is.
    [[nodiscard]] unsigned daysOfKeeping() const;
    /// What the next run is called in place of what its caller says: "erase", for one, is a clean to the coordinator.
    void setCommand(std::string command) { m_command = std::move(command); }
    /// Has the gate count these items now, and again with what the next run does: its record and its sums tell of them.
    void setLeftAlone(std::vector<LeftAlone> items);
    /// Told of records that cannot be read; without this the log is.
    void setReport(std::function<void(const Error&)> report) { m_report = std::move(report); }

    /// Takes the lock, has expired items purged where `command` removes, and opens the gate. Unavailable while another
    /// program changes this user's files.
    Result<void> begin(const std::string& command);
    void finish();
    /// The last run's name; nothing where it has no record.
    [[nodiscard]] const std::optional<std::string>& run() const { return m_run; }

    /// Nothing removes what is in these but the runs themselves, and no scan lists it.
    [[nodiscard]] const std::string& runsFolder() const { return m_archive.runsFolder(); }
    [[nodiscard]] const std::string& keptFolder() const { return m_archive.keptFolder(); }

    // History; any thread

    [[nodiscard]] std::vector<RunRecord> records() const { return m_archive.records(); }
    /// As RunArchive::forEachRecord.
    void forEachRecord(const std::function<bool(RunRecord)>& visit) const { m_archive.forEachRecord(visit); }
    [[nodiscard]] Result<RunRecord> record(const std::string& run) const { return m_archive.record(run); }
    [[nodiscard]] KeptStatus statusOf(const RunRecord& record, const KeptItem& item) const;
    /// "done", "interrupted", "undone" or "partly undone".
    [[nodiscard]] std::string stateOf(const RunRecord& record) const;
    /// With the items of an interrupted run that are kept though it could not say so any more.
    [[nodiscard]] RunRecord completed(RunRecord record) const;
    /// By when what a run kept may go.
    [[nodiscard]] static std::string keptUntil(const RunRecord& record);
    /// Everything that takes space among what is kept, of the newest run first.
    [[nodiscard]] std::vector<KeptEntry> kept() const;

    // The way back; each is a run of its own, and ends before its next item when `isStopped` says so

    /// Puts back what a run kept, all of it or what is at the paths. Protected for a run of another user.
    Result<std::vector<UndoneItem>> undo(
        const std::string& run, const std::vector<std::string>& paths,
        const std::function<bool()>& isStopped = [] { return false; });
    /// Removes kept items for good.
    Result<std::vector<RecordedItem>> purge(
        const std::vector<KeptEntry>& entries, const std::function<bool()>& isStopped = [] { return false; });
    [[nodiscard]] std::vector<KeptEntry> expired() const;

  private:
    Result<void> lock();
    void leaveAlone();
    [[nodiscard]] RunHeader header(const std::string& command) const;
    [[nodiscard]] UndoneItem undo(const RunRecord& record, const KeptItem& item);
    std::vector<RecordedItem> purgeLocked(const std::vector<KeptEntry>& entries,
                                          const std::function<bool()>& isStopped);

    const Services m_services;
    RunArchive m_archive; ///< uses m_report
    std::optional<Keeping> m_keeping;
    std::string m_command;
    std::vector<LeftAlone> m_leftAlone;
    std::function<void(const Error&)> m_report;
    std::optional<FileLock> m_lock;
    std::optional<RecordWriter> m_writer;
    std::optional<std::string> m_run;
};

} // namespace sweeply
