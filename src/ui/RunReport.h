#pragma once

#include "engine/record/ChangeRuns.h"
#include "ui/SectionModel.h"

#include <QString>
#include <functional>
#include <string>
#include <vector>

namespace sweeply {

/// One line of the list of runs.
struct RunRow {
    RunHeader header;
    RunSums sums;
    std::string state;         ///< in the words of records, or "under way"
    std::uint64_t keptNow = 0; ///< items that can be put back or freed still
    std::uint64_t keptSize = 0;
};

/// Every run that there is a record of, the newest first. Any thread; not all when `isStopped` ended it.
/// `isRemoving`: a run may be under way, and not have its end yet for that reason.
[[nodiscard]] std::vector<RunRow> runRows(const ChangeRuns& runs, bool isRemoving,
                                          const std::function<bool()>& isStopped);

/// What became of the items of one run, as far as it is known: what stayed and why, what can be put back, what is gone.
struct RunReport {
    QString title;
    QString summary;
    std::vector<ListedSection> sections;
    std::string run = {};             ///< whose record it is; empty where it is of none
    std::vector<KeptEntry> kept = {}; ///< what that run keeps now; an item's number is its place here, from 1
};

/// The report of a run that has a record. Any thread, like the next. An error names the run.
[[nodiscard]] Result<RunReport> reportOfRun(const ChangeRuns& runs, const std::string& run, bool isRemoving,
                                            SizeUnits units);
/// The report of what was changed just now, from the outcomes themselves.
[[nodiscard]] RunReport reportOfItems(const std::string& title, const std::vector<RecordedItem>& items,
                                      SizeUnits units);
/// The same for what was put back.
[[nodiscard]] std::vector<RecordedItem> recordedItems(const std::vector<UndoneItem>& items,
                                                      const std::vector<KeptEntry>& kept);

/// "Cleaned", "Uninstalled" and so on; what a newer program did is called what it is called.
[[nodiscard]] std::string titleOfCommand(const std::string& command);
[[nodiscard]] std::string titleOfState(const std::string& state);
/// A time of a record in this machine's time and language.
[[nodiscard]] QString shownTime(const std::string& time);

} // namespace sweeply
