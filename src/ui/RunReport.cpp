#include "ui/RunReport.h"

#include "platform/Localization.h"
#include "ui/Text.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <utility>

namespace sweeply {

namespace {

struct Word {
    std::string_view word;
    const char* title;
};

std::optional<std::string> titleIn(std::span<const Word> words, std::string_view word) {
    const auto found = std::ranges::find(words, word, &Word::word);
    return found == words.end() ? std::nullopt : std::optional(localizedString(found->title));
}

constexpr std::array kCommands{
    Word{"clean", translatable("Cleaned")},
    Word{"uninstall", translatable("Uninstalled")},
    Word{"erase", translatable("Erased")},
    Word{"apply", translatable("Plan carried out")},
    Word{"undo", translatable("Put back")},
    Word{"purge", translatable("Freed what was kept")},
    Word{"clean-volume", translatable("Volume cleaned")},
};

constexpr std::array kStates{
    Word{"done", translatable("Done")},           Word{"interrupted", translatable("Interrupted")},
    Word{"undone", translatable("Undone")},       Word{"partly undone", translatable("Partly undone")},
    Word{"under way", translatable("Under way")},
};

/// What is said of items that are done in another way than by going.
constexpr std::array kWays{
    Word{"emptied", translatable("emptied; it stays itself")},
    Word{"slimmed", translatable("lost code; it stays itself")},
    Word{"erased", translatable("overwritten first")},
    Word{"forgotten", translatable("the system forgot the package")},
    Word{"taken-off", translatable("taken off the list; no file went")},
};

/// What became of an item until now, in the order in which it is told.
enum class Fate : std::uint8_t { Stayed, Kept, Missing, Back, Removed, FreedSince, WasGone };

constexpr std::array kFates{
    translatable("Still there"),      translatable("Kept"),    translatable("Lost"),
    translatable("Back in place"),    translatable("Removed"), translatable("Kept then, freed since"),
    translatable("Was gone already"),
};

Fate fateOf(KeptStatus status) {
    switch (status) {
    case KeptStatus::Kept:
        return Fate::Kept;
    case KeptStatus::Restored:
        return Fate::Back;
    case KeptStatus::Purged:
        return Fate::FreedSince;
    case KeptStatus::HalfPurged:
    case KeptStatus::Missing:
        return Fate::Missing;
    case KeptStatus::NotMoved:
        break;
    }
    return Fate::Stayed;
}

Fate fateOf(const RecordedItem& item) {
    if (item.outcome == "removed" || titleIn(kWays, item.outcome))
        return Fate::Removed;
    if (item.outcome == "kept")
        return Fate::Kept;
    if (item.outcome == "restored")
        return Fate::Back;
    return item.outcome == "gone" ? Fate::WasGone : Fate::Stayed;
}

/// Does it take space still?
bool isKeptNow(KeptStatus status) { return status == KeptStatus::Kept || status == KeptStatus::HalfPurged; }

/// What the person could do about an item that stayed; nullptr where nothing helps.
const char* helpFor(const RecordedItem& item) {
    switch (item.remedy) {
    case Remedy::Administrator:
        return translatable("An administrator may: authorize with the lock in the toolbar, and try again.");
    case Remedy::WritableVolume:
        return translatable("The volume is read-only: mount it for writing, and try again.");
    case Remedy::Room:
        return translatable("The volume is full: make room on it, and try again.");
    case Remedy::None:
        break;
    }
    if (item.outcome == "changed")
        return translatable("A new scan shows what it is now.");
    if (item.outcome == "occupied")
        return translatable("Move away what stands there, and put it back again.");
    return nullptr;
}

std::string noteOn(const RecordedItem& item) {
    std::string note = item.reason.value_or(titleIn(kWays, item.outcome).value_or(std::string()));
    if (const char* help = helpFor(item))
        note += (note.empty() ? "" : ". ") + localizedString(help);
    return note;
}

/// Sorts items into sections as they come.
class Sections {
  public:
    void add(Fate fate, ListedItem item) {
        auto& section = m_sections[static_cast<std::size_t>(fate)];
        ++section.count;
        section.size += item.size;
        section.items.push_back(std::move(item));
    }
    [[nodiscard]] const ListedSection& of(Fate fate) const { return m_sections[static_cast<std::size_t>(fate)]; }
    [[nodiscard]] std::vector<ListedSection> take() {
        std::vector<ListedSection> sections;
        for (std::size_t fate = 0; fate < m_sections.size(); ++fate) {
            if (m_sections[fate].items.empty())
                continue;
            m_sections[fate].title = localizedString(kFates[fate]);
            sections.push_back(std::move(m_sections[fate]));
        }
        return sections;
    }

  private:
    std::array<ListedSection, kFates.size()> m_sections;
};

QString summaryOf(const Sections& sections, std::uint64_t freed, SizeUnits units) {
    QStringList parts;
    const auto add = [&](const std::string& text) { parts << QString::fromStdString(text); };
    if (freed > 0 || sections.of(Fate::Removed).count > 0)
        add(localizedFormat("Freed: %@.", {stringSizeFromLong(freed, units)}));
    if (const auto& kept = sections.of(Fate::Kept); kept.count > 0)
        add(localizedFormat("Kept, and can be put back: %i items, %@.",
                            {kept.count, stringSizeFromLong(kept.size, units)}));
    if (const auto back = sections.of(Fate::Back).count)
        add(localizedFormat("Back in place: %i.", {back}));
    if (const auto stayed = sections.of(Fate::Stayed).count)
        add(localizedFormat("Still there: %i.", {stayed}));
    return parts.join(QLatin1Char(' '));
}

bool isFreed(const RecordedItem& item) {
    return item.outcome == "removed" || item.outcome == "emptied" || item.outcome == "slimmed" ||
           item.outcome == "erased";
}

} // namespace

std::vector<RunRow> runRows(const ChangeRuns& runs, bool isRemoving, const std::function<bool()>& isStopped) {
    std::vector<RunRow> rows;
    runs.forEachRecord([&](RunRecord found) {
        const auto record = runs.completed(std::move(found));
        RunRow row{record.header, record.sums, runs.stateOf(record)};
        if (isRemoving && rows.empty() && !record.ended)
            row.state = "under way";
        for (const auto& item : record.kept) {
            if (!isKeptNow(runs.statusOf(record, item)))
                continue;
            ++row.keptNow;
            row.keptSize += item.size;
        }
        rows.push_back(std::move(row));
        return !isStopped();
    });
    return rows;
}

Result<RunReport> reportOfRun(const ChangeRuns& runs, const std::string& run, bool isRemoving, SizeUnits units) {
    auto found = runs.record(run);
    if (!found)
        return Failure(found.error());
    const auto record = runs.completed(*std::move(found));
    RunReport report{QString::fromStdString(titleOfCommand(record.header.command)) + QStringLiteral(", ") +
                         shownTime(record.header.started),
                     {},
                     {},
                     run};
    // Of an interrupted run's items that could not be written down any more only the kept ones are known, by path.
    const auto keptOf = [&](const RecordedItem& item) {
        if (item.number == 0)
            return std::ranges::find(record.kept, item.path, &KeptItem::path);
        const auto kept = std::ranges::lower_bound(record.kept, item.number, {}, &KeptItem::number);
        return kept != record.kept.end() && kept->number == item.number ? kept : record.kept.end();
    };
    const auto until = runs.keptUntil(record);
    Sections sections;
    for (const auto& item : record.items) {
        ListedItem listed{item.path, item.size, noteOn(item)};
        auto fate = fateOf(item);
        const auto kept = item.outcome == "kept" ? keptOf(item) : record.kept.end();
        if (kept != record.kept.end()) {
            const auto status = runs.statusOf(record, *kept);
            fate = fateOf(status);
            if (isKeptNow(status)) {
                report.kept.push_back({run, *kept, until});
                listed.number = static_cast<std::uint32_t>(report.kept.size());
                listed.note = status == KeptStatus::HalfPurged
                                  ? localizedString("not whole any more; it can only be freed")
                                  : localizedFormat("until %@", {utf8(shownTime(until))});
            }
        }
        sections.add(fate, std::move(listed));
    }
    report.summary = summaryOf(sections, record.sums.freed, units);
    if (!record.ended)
        report.summary = (isRemoving ? localized("This run has not ended, or was interrupted.")
                                     : localized("This run was interrupted; what it did until then is known.")) +
                         QLatin1Char(' ') + report.summary;
    report.sections = sections.take();
    return report;
}

RunReport reportOfItems(const std::string& title, const std::vector<RecordedItem>& items, SizeUnits units) {
    Sections sections;
    std::uint64_t freed = 0;
    for (const auto& item : items) {
        freed += isFreed(item) ? item.size : 0;
        // A run that could not begin has one item without a path.
        auto note = item.path.empty() ? std::string() : noteOn(item);
        sections.add(fateOf(item),
                     {item.path.empty() ? item.reason.value_or(std::string()) : item.path, item.size, std::move(note)});
    }
    RunReport report{QString::fromStdString(title), summaryOf(sections, freed, units), {}};
    report.sections = sections.take();
    return report;
}

std::vector<RecordedItem> recordedItems(const std::vector<UndoneItem>& items, const std::vector<KeptEntry>& kept) {
    std::vector<RecordedItem> recorded;
    for (const auto& item : items) {
        const auto entry =
            std::ranges::find_if(kept, [&](const KeptEntry& candidate) { return candidate.item.path == item.path; });
        RecordedItem result{item.path, {}, {}, entry == kept.end() ? 0 : entry->item.size, item.outcome, item.reason};
        result.remedy = item.needsRights ? Remedy::Administrator : Remedy::None;
        recorded.push_back(std::move(result));
    }
    return recorded;
}

std::string titleOfCommand(const std::string& command) { return titleIn(kCommands, command).value_or(command); }

std::string titleOfState(const std::string& state) { return titleIn(kStates, state).value_or(state); }

QString shownTime(const std::string& time) {
    const auto seconds = timeIn(time);
    return seconds ? QLocale().toString(QDateTime::fromSecsSinceEpoch(*seconds), QLocale::ShortFormat) : shown(time);
}

} // namespace sweeply
