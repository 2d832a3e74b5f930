#include "appcore/changes/ChangeGate.h"

#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/processes/LaunchItems.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/FileManager.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

/// What a failure is to the person.
ChangeOutcome outcomeOf(const Error& error) {
    if (error.kind == ErrorKind::NotFound)
        return {OutcomeKind::Gone};
    return {error.kind == ErrorKind::Protected ? OutcomeKind::Refused : OutcomeKind::Failed, error};
}

ChangeOutcome failure(std::string path, std::string reason, ErrorKind kind = ErrorKind::Other) {
    return {OutcomeKind::Failed, {kind, std::move(path), std::move(reason)}};
}

bool isPath(const ChangeRequest& request) {
    return request.kind != ChangedKind::LoginItem && request.kind != ChangedKind::Receipt;
}

} // namespace

ChangeGate::ChangeGate(Services services)
    : m_services(services), m_changes(services.files, services.privileged, services.tools),
      m_slimmer(services.files, services.privileged, services.tools,
                services.folders.expandTilde("~/Library/Application Support/Sweeply/")),
      m_keeper(services.files, services.privileged) {}

void ChangeGate::startRun(ChangeJournal* journal, Keeping keeping) {
    m_services.files.removals().refreshGuard();
    m_journal = journal;
    m_keeping = journal ? keeping : Keeping::Off;
    m_keptCount = 0;
    const std::lock_guard lock(m_mutex);
    m_reports.clear();
    m_sums = {};
}

void ChangeGate::finishRun() {
    m_services.files.removals().forgetFoldersOfRemovals();
    m_journal = nullptr;
    m_keeping = Keeping::Off;
}

ChangeOutcome ChangeGate::perform(const ChangeRequest& request) {
    if (m_journal) {
        if (const auto room = m_journal->willChange(); !room) {
            m_stop();
            return reported(request, {OutcomeKind::Failed, room.error()});
        }
    }
    return reported(request, change(request));
}

void ChangeGate::sweepSlimmings() {
    m_slimmer.sweep();
    m_services.files.removals().forgetFoldersOfRemovals();
}

ChangeOutcome ChangeGate::stays(const ChangeRequest& request, const std::string& reason, ErrorKind kind) {
    return reported(request, failure(request.path, reason, kind));
}

ChangeOutcome ChangeGate::reported(const ChangeRequest& request, ChangeOutcome outcome) {
    ChangeReport report{request.path, request.module, request.kind, request.size, std::move(outcome), request.why};
    if (!report.outcome.isDone())
        m_services.log.log(report.outcome.error.message());
    if (m_journal)
        m_journal->changed(report);
    const std::lock_guard lock(m_mutex);
    m_sums.add(report.outcome.kind, report.size);
    m_reports.push_back(std::move(report));
    return m_reports.back().outcome;
}

ChangeOutcome ChangeGate::change(const ChangeRequest& request) {
    if (isPath(request)) {
        // First: what is protected need not be looked at.
        if (const auto reason = m_services.files.removals().guard().reasonAgainst(request.path); !reason.empty())
            return {OutcomeKind::Refused, {ErrorKind::Protected, request.path, reason}};
        if (auto difference = differenceFromSeen(request))
            return *std::move(difference);
    }
    switch (request.operation) {
    case Operation::Keep:
        return keep(request);
    case Operation::TakeOffList:
        return takeOffList(request);
    case Operation::ForgetReceipt:
        return forgetReceipt(request);
    case Operation::Overwrite:
        return overParts(request, OutcomeKind::Erased, &FileChanges::overwrite);
    case Operation::Empty:
        return overParts(request, OutcomeKind::Emptied, &FileChanges::empty);
    case Operation::Slim:
        if (const auto slimmed = m_slimmer.slimBinaryAtPath(request.path, request.slices); !slimmed)
            return outcomeOf(slimmed.error());
        return {OutcomeKind::Slimmed};
    case Operation::Remove:
        break;
    }
    if (request.kind == ChangedKind::LaunchItem)
        m_services.launchItems.removeLaunchDaemon(request.path);
    return overParts(request, OutcomeKind::Removed, &FileChanges::remove);
}

ChangeOutcome ChangeGate::outcomeOfUnlisted(const ChangeRequest& request) const {
    if (isPath(request)) {
        if (const auto reason = m_services.files.removals().guard().reasonAgainst(request.path); !reason.empty())
            return {OutcomeKind::Refused, {ErrorKind::Protected, request.path, reason}};
    }
    if (isNothingLeft(request))
        return {OutcomeKind::Gone};
    return {OutcomeKind::Refused, {ErrorKind::Other, request.path, "no longer found"}};
}

bool ChangeGate::isNothingLeft(const ChangeRequest& request) const {
    if (request.operation == Operation::TakeOffList)
        return !m_services.loginItems.isListed(request.path);
    if (request.operation == Operation::ForgetReceipt)
        return m_services.packages.checkPackageInDB(request.path).has_value(); // the answer names what is missing
    const auto attributes = m_services.files.attributesOfItemAtPath(request.path, Links::DontFollow);
    if (!attributes)
        return attributes.error().kind == ErrorKind::NotFound;
    if (request.operation == Operation::Slim)
        return m_slimmer.isSlim(request.path, request.slices);
    const auto isEmptied = [this](const std::string& path) { return m_changes.isEmptied(path); };
    if (request.operation == Operation::Empty && !request.hasParts)
        return isEmptied(request.path);
    if (!request.hasParts || request.obstacle)
        return false;
    return request.operation == Operation::Empty ? std::ranges::all_of(request.parts, isEmptied)
                                                 : request.parts.empty();
}

std::optional<ChangeOutcome> ChangeGate::differenceFromSeen(const ChangeRequest& request) const {
    if (!request.seen.isKnown())
        return std::nullopt;
    MeasuredItem now;
    if (request.isSeenByParts) {
        for (const auto& part : request.parts)
            now += m_services.sizes.measure(part);
        now.identity.kind = now.identity.entries > 0 ? request.seen.kind : ItemKind::None;
    } else {
        now = m_services.sizes.measure(request.path);
    }
    if (now.identity == request.seen)
        return std::nullopt;
    if (!now.identity.isKnown() && !m_services.files.attributesOfItemAtPath(request.path, Links::DontFollow))
        return ChangeOutcome{OutcomeKind::Gone};
    return ChangeOutcome{OutcomeKind::Changed,
                         {ErrorKind::Other, request.path, "has changed since it was found, and stays"}};
}

ChangeOutcome ChangeGate::overParts(const ChangeRequest& request, OutcomeKind done,
                                    Result<void> (FileChanges::*way)(const std::string&)) {
    if (!request.hasParts) {
        const auto changed = (m_changes.*way)(request.path);
        return changed ? ChangeOutcome{done} : outcomeOf(changed.error());
    }
    auto obstacle = request.obstacle;
    for (const auto& part : request.parts) {
        const auto changed = (m_changes.*way)(part);
        if (changed || changed.error().kind == ErrorKind::NotFound)
            continue;
        if (!obstacle)
            obstacle = changed.error();
        if (request.kind != ChangedKind::Log) // of logs each is worth having on its own
            break;
    }
    if (obstacle)
        return {obstacle->kind == ErrorKind::Protected ? OutcomeKind::Refused : OutcomeKind::Failed, *obstacle};
    return {done};
}

ChangeOutcome ChangeGate::takeOffList(const ChangeRequest& request) {
    if (!m_services.loginItems.isListed(request.path))
        return {OutcomeKind::Gone};
    return m_services.loginItems.removeLoginItemAtPath(request.path)
               ? ChangeOutcome{OutcomeKind::TakenOff}
               : failure(request.path, "the login item could not be removed");
}

ChangeOutcome ChangeGate::forgetReceipt(const ChangeRequest& request) {
    if (m_services.packages.checkPackageInDB(request.path))
        return {OutcomeKind::Gone}; // the answer names what is missing
    return m_services.packages.removePkg(request.path) ? ChangeOutcome{OutcomeKind::Forgotten}
                                                       : failure(request.path, "the receipt could not be forgotten");
}

// Keeping

std::vector<std::string> ChangeGate::partsToKeep(const ChangeRequest& request) const {
    switch (request.kind) {
    case ChangedKind::LoginItem:
        return {};
    case ChangedKind::Receipt:
        return m_services.packages.receiptFiles(request.path);
    default:
        break;
    }
    std::vector<std::string> parts{request.path};
    const auto item = m_services.files.locate(request.path);
    if (const auto companion = item ? m_services.files.removals().companionOf(*item) : std::nullopt)
        parts.push_back(joinedPath(pathWithoutLastComponent(request.path), *companion));
    return parts;
}

ChangeOutcome ChangeGate::keep(const ChangeRequest& request) {
    if (!m_journal)
        return failure(request.path, "cannot be kept: nothing can be written down", ErrorKind::Unavailable);
    KeptItem item{++m_keptCount, request.path, std::string(request.module),
                  request.kind,  request.size, partsToKeep(request)};
    if (request.kind == ChangedKind::Receipt && item.parts.empty())
        return m_services.packages.checkPackageInDB(request.path) ? ChangeOutcome{OutcomeKind::Gone}
                                                                  : withoutKeeping(request);
    const std::string folder = joinedPath(m_journal->keptFolder(), std::to_string(item.number));
    if (request.kind == ChangedKind::LoginItem) {
        if (!m_services.loginItems.isListed(request.path))
            return {OutcomeKind::Gone};
        auto list = m_services.loginItems.listFile();
        if (!list)
            return outcomeOf(list.error());
        item.list = *std::move(list);
    } else {
        const auto ready = m_keeper.prepare(item.parts, folder);
        if (!ready)
            return ready.error().kind == ErrorKind::Unavailable ? withoutKeeping(request) : outcomeOf(ready.error());
        item.parents = m_keeper.parentsOf(item.parts.front());
    }
    if (const auto written = m_journal->willKeep(item); !written) {
        m_stop();
        return {OutcomeKind::Failed, written.error()};
    }
    if (request.kind == ChangedKind::LoginItem)
        return m_services.loginItems.removeLoginItemAtPath(request.path)
                   ? ChangeOutcome{OutcomeKind::Kept}
                   : failure(request.path, "the login item could not be removed");
    if (request.kind == ChangedKind::LaunchItem)
        m_services.launchItems.removeLaunchDaemon(request.path);
    const auto moved = m_keeper.moveAway(item, folder);
    return moved ? ChangeOutcome{OutcomeKind::Kept} : outcomeOf(moved.error());
}

ChangeOutcome ChangeGate::withoutKeeping(ChangeRequest request) {
    if (m_keeping != Keeping::OnWherePossible)
        return failure(request.path, "cannot be kept", ErrorKind::Unavailable);
    request.operation = request.kind == ChangedKind::Receipt ? Operation::ForgetReceipt : Operation::Remove;
    return change(request);
}

std::string ChangeGate::reasonAgainstKeeping(const ChangeRequest& request) const {
    const auto home = m_services.files.attributesOfItemAtPath(m_services.folders.home, Links::Follow);
    const auto parts = partsToKeep(request);
    if (request.kind == ChangedKind::Receipt && parts.empty() && !m_services.packages.checkPackageInDB(request.path))
        return "its receipt is not in files of its own";
    for (const auto& part : parts) {
        const auto attributes = m_services.files.attributesOfItemAtPath(part, Links::DontFollow);
        if (attributes && home && attributes->device != home->device)
            return "it is not on the volume of the home folder";
    }
    return {};
}

bool ChangeGate::isKept(const KeptItem& item, const std::string& folder) const {
    return item.kind == ChangedKind::LoginItem ? !m_services.loginItems.isListed(item.path)
                                               : m_keeper.isKept(item, folder);
}

Result<void> ChangeGate::putBack(const KeptItem& item, const std::string& folder) {
    if (item.kind == ChangedKind::LoginItem)
        return m_services.loginItems.putBack(item.path, item.list);
    auto moved = m_keeper.moveBack(item, folder);
    if (moved && item.kind == ChangedKind::LaunchItem)
        m_services.launchItems.loadLaunchDaemon(item.path);
    return moved;
}

std::vector<ChangeReport> ChangeGate::reports() const {
    const std::lock_guard lock(m_mutex);
    return m_reports;
}

ChangeSums ChangeGate::sums() const {
    const std::lock_guard lock(m_mutex);
    return m_sums;
}

} // namespace sweeply
