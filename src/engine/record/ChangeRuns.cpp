#include "engine/record/ChangeRuns.h"

#include "appcore/FolderConstants.h"
#include "engine/CoordinatorPreferences.h"
#include "engine/EngineEvents.h"
#include "platform/FileManager.h"
#include "platform/NotificationCenter.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

constexpr std::int64_t kDay = 24 * 60 * 60;
constexpr unsigned kUsualDays = 30;
constexpr const char* kLock = "~/Library/Application Support/Sweeply/Changes.lock";

} // namespace

ChangeRuns::ChangeRuns(Services services)
    : m_services(std::move(services)),
      m_archive(m_services.files, m_services.folders, [this](const Error& error) { m_report(error); }),
      m_report([this](const Error& error) { m_services.log.log(error.message()); }) {}

Keeping ChangeRuns::keeping() const {
    if (m_keeping)
        return *m_keeping;
    return m_services.defaults.unsignedForKey(coordinator::kKeepRemovedDays) > 0 ? Keeping::On : Keeping::Off;
}

unsigned ChangeRuns::daysOfKeeping() const {
    const auto days = m_services.defaults.unsignedForKey(coordinator::kKeepRemovedDays);
    return days > 0 ? static_cast<unsigned>(std::min<std::uint64_t>(days, UINT32_MAX)) : kUsualDays;
}

RunHeader ChangeRuns::header(const std::string& command) const {
    return {{}, command, m_services.program, m_services.root, m_services.folders.userName, {}, daysOfKeeping()};
}

Result<void> ChangeRuns::lock() {
    if (m_lock)
        return Failure(Error{ErrorKind::Unavailable, {}, "a run is under way already"});
    const std::string path = m_services.folders.expandTilde(kLock);
    const auto folder = m_services.files.createDirectoryAtPath(pathWithoutLastComponent(path));
    auto held = folder ? FileLock::tryAcquire(m_services.files, path) : Result<FileLock>(Failure(folder.error()));
    if (held)
        m_lock.emplace(*std::move(held));
    else if (held.error().kind == ErrorKind::Unavailable)
        return Failure(Error{ErrorKind::Unavailable,
                             {},
                             "another Sweeply is changing this user's files; nothing was changed, try again later"});
    else if (held.error().kind != ErrorKind::ReadOnly) // there nobody changes anything
        return Failure(held.error());
    return {};
}

void ChangeRuns::setLeftAlone(std::vector<LeftAlone> items) {
    m_leftAlone = std::move(items);
    leaveAlone();
}

void ChangeRuns::leaveAlone() {
    for (const auto& [request, outcome] : m_leftAlone)
        m_services.gate.leave(request, outcome);
}

Result<void> ChangeRuns::begin(const std::string& usualCommand) {
    const std::string& command = m_command.empty() ? usualCommand : m_command;
    const auto kept = keeping();
    m_keeping.reset();
    m_run.reset();
    if (const auto locked = lock(); !locked) {
        m_services.gate.startRun();
        leaveAlone();
        return locked;
    }
    if (const auto old = expired();
        !old.empty() && (command == "clean" || command == "uninstall" || command == "apply"))
        purgeLocked(old, [] { return false; });
    m_writer.emplace(m_services.files, m_archive, header(command));
    m_services.gate.startRun(&*m_writer, kept);
    return {};
}

void ChangeRuns::finish() {
    leaveAlone(); // at the end, for a run that changes nothing has no record
    m_leftAlone.clear();
    const auto sums = m_services.gate.sums();
    m_services.gate.finishRun();
    if (m_writer) {
        m_writer->finish({sums.removed, sums.freed, sums.kept, sums.failed});
        m_run = m_writer->run();
    }
    m_writer.reset();
    m_lock.reset();
}

// History

KeptStatus ChangeRuns::statusOf(const RunRecord& record, const KeptItem& item) const {
    if (record.purged.contains(item.number))
        return m_archive.holdsAnythingOf(record.header.run, item.number) ? KeptStatus::HalfPurged : KeptStatus::Purged;
    if (record.restored.contains(item.number))
        return KeptStatus::Restored;
    const bool isSaid = record.itemOfKept(item.number) != nullptr;
    if (m_services.gate.isKept(item, m_archive.folderOf(record.header.run, item.number)))
        return KeptStatus::Kept;
    // It was moved, and then back, by an undo that could not say so any more; or by somebody else.
    const bool isInPlace = item.kind == ChangedKind::LoginItem ||
                           m_services.files.attributesOfItemAtPath(item.parts.front(), Links::DontFollow).has_value();
    if (isSaid)
        return isInPlace ? KeptStatus::Restored : KeptStatus::Missing;
    return KeptStatus::NotMoved;
}

std::string ChangeRuns::stateOf(const RunRecord& record) const {
    std::size_t restored = 0;
    std::size_t others = 0;
    for (const auto& item : record.kept) {
        const auto status = statusOf(record, item);
        restored += status == KeptStatus::Restored ? 1U : 0U;
        others += status != KeptStatus::Restored && status != KeptStatus::NotMoved ? 1U : 0U;
    }
    if (restored > 0)
        return others > 0 ? "partly undone" : "undone";
    return record.ended ? "done" : "interrupted";
}

RunRecord ChangeRuns::completed(RunRecord record) const {
    for (const auto& item : record.kept) {
        if (record.ended || record.itemOfKept(item.number) || statusOf(record, item) == KeptStatus::NotMoved)
            continue;
        record.items.push_back({item.path, item.module, std::string(nameOf(item.kind)), item.size, "kept"});
        ++record.sums.kept;
    }
    return record;
}

std::string ChangeRuns::keptUntil(const RunRecord& record) {
    return timeText(timeIn(record.header.started).value_or(0) + record.header.keepDays * kDay);
}

std::vector<KeptEntry> ChangeRuns::kept() const {
    std::vector<KeptEntry> entries;
    for (const auto& record : records()) {
        for (const auto& item : record.kept) {
            if (const auto status = statusOf(record, item);
                status == KeptStatus::Kept || status == KeptStatus::HalfPurged)
                entries.push_back({record.header.run, item, keptUntil(record)});
        }
    }
    return entries;
}

std::vector<KeptEntry> ChangeRuns::expired() const {
    auto entries = kept();
    std::erase_if(entries, [&](const KeptEntry& entry) { return timeIn(entry.until).value_or(0) > m_services.now(); });
    return entries;
}

// The way back

UndoneItem ChangeRuns::undo(const RunRecord& record, const KeptItem& item) {
    const auto status = statusOf(record, item);
    if (status == KeptStatus::HalfPurged)
        return {item.path, "missing", "was being purged, and is not whole any more"};
    if (status == KeptStatus::Missing)
        return {item.path, "missing", "is not kept any more, and not in its place either"};
    const auto& run = record.header.run;
    const auto back = m_services.gate.putBack(item, m_archive.folderOf(run, item.number));
    if (!back) {
        const auto& error = back.error();
        const std::string reason = error.path == item.path ? error.reason : error.message();
        if (error.kind == ErrorKind::AlreadyExists)
            return {item.path, "occupied", "something stands there; the item is still kept"};
        return {item.path, error.kind == ErrorKind::NotFound ? "missing" : "failed", reason,
                error.kind == ErrorKind::PermissionDenied};
    }
    if (const auto noted = m_archive.append(run, restoredLine(item.number)); !noted)
        m_services.log.log(noted.error().message()); // where it lies tells as much
    return {item.path, "restored"};
}

Result<std::vector<UndoneItem>> ChangeRuns::undo(const std::string& run, const std::vector<std::string>& paths,
                                                 const std::function<bool()>& isStopped) {
    m_run.reset();
    if (const auto locked = lock(); !locked)
        return Failure(locked.error());
    const auto record = m_archive.record(run);
    const bool isOwn = record && record->header.user == m_services.folders.userName;
    if (!isOwn) {
        m_lock.reset();
        return record ? Failure(Error{ErrorKind::Protected, run, "is a run of another user, " + record->header.user})
                      : Failure(record.error());
    }
    m_writer.emplace(m_services.files, m_archive, header("undo"));
    m_services.gate.startRun();
    std::vector<UndoneItem> items;
    std::uint64_t failed = 0;
    // The last one first: a list is then as it was before each.
    for (auto item = record->kept.rbegin(); item != record->kept.rend() && !isStopped(); ++item) {
        const auto status = statusOf(*record, *item);
        if (status == KeptStatus::Restored || status == KeptStatus::Purged || status == KeptStatus::NotMoved ||
            (!paths.empty() && std::ranges::find(paths, item->path) == paths.end()))
            continue;
        const auto ready = m_writer->willChange();
        items.push_back(ready ? undo(*record, *item) : UndoneItem{item->path, "failed", ready.error().reason});
        const auto& done = items.back();
        failed += done.outcome == "restored" ? 0U : 1U;
        m_writer->add(
            {item->path, item->module, std::string(nameOf(item->kind)), item->size, done.outcome, done.reason});
    }
    m_services.gate.finishRun();
    m_writer->finish({0, 0, 0, failed});
    m_run = m_writer->run();
    m_writer.reset();
    m_lock.reset();
    return items;
}

Result<std::vector<RecordedItem>> ChangeRuns::purge(const std::vector<KeptEntry>& entries,
                                                    const std::function<bool()>& isStopped) {
    m_run.reset();
    if (const auto locked = lock(); !locked)
        return Failure(locked.error());
    auto items = purgeLocked(entries, isStopped);
    m_lock.reset();
    return items;
}

std::vector<RecordedItem> ChangeRuns::purgeLocked(const std::vector<KeptEntry>& entries,
                                                  const std::function<bool()>& isStopped) {
    RecordWriter writer(m_services.files, m_archive, header("purge"));
    m_services.gate.startRun();
    std::vector<RecordedItem> items;
    RunSums sums;
    for (const auto& [run, item, until] : entries) {
        if (isStopped())
            break;
        RecordedItem done{item.path, item.module, std::string(nameOf(item.kind)), item.size, "removed"};
        // Written down first: what is half gone must not be put back.
        const auto gone =
            writer.willChange().and_then([&] { return m_archive.append(run, purgedLine(item.number)); }).and_then([&] {
                return m_services.gate.purge(m_archive.folderOf(run, item.number));
            });
        if (gone) {
            ++sums.removed;
            sums.freed += item.size;
            m_services.notifications.post(RemovedAmountOfSpace{item.size});
        } else {
            ++sums.failed;
            done.outcome = "failed";
            done.reason = gone.error().message();
            done.remedy = remedyFor(gone.error());
        }
        writer.add(done);
        items.push_back(std::move(done));
    }
    m_services.gate.finishRun();
    writer.finish(sums);
    m_run = writer.run();
    if (const auto saved = m_services.defaults.synchronize(); !saved)
        m_services.log.log(saved.error().message());
    return items;
}

} // namespace sweeply
