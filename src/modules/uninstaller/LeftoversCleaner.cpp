#include "modules/uninstaller/LeftoversCleaner.h"

#include "appcore/LoginItems.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/changes/ChangeGate.h"
#include "appcore/ownership/InstalledApplications.h"
#include "appcore/processes/LaunchItems.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/StringExtras.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

namespace sweeply {

namespace {

constexpr int kWeeksUnused = 3;
constexpr std::time_t kWeek = 604800;

/// No application's: the system's own, widgets', which another module looks after, and ours.
constexpr std::array<std::string_view, 3> kForeignPrefixes{"com.apple", "widget-", "com.brindle.Sweeply"};
/// The system's own that do not say so.
constexpr std::array<std::string_view, 3> kSystemPreferences{"loginwindow.plist", "pbs.plist",
                                                             "diagnostics_agent.plist"};

bool isCandidate(std::string_view name) {
    return pathExtension(name) == "plist" && !name.starts_with('.') &&
           std::ranges::none_of(kForeignPrefixes, [&](auto prefix) { return name.starts_with(prefix); }) &&
           std::ranges::find(kSystemPreferences, name) == kSystemPreferences.end();
}

std::string lowercaseName(std::string_view path) { return lowercaseString(lastPathComponent(path)); }

} // namespace

LeftoversCleaner::LeftoversCleaner(Services services)
    : m_services(std::move(services)), m_allApps(m_services.installed.index(nullptr)),
      m_allPrefFiles(getAllPrefFiles()), m_allLaunchFiles(m_services.launchItems.getAllLaunchFiles()) {}

void LeftoversCleaner::leftoversAnalyse() {
    getPrefFilesToRemove();
    getLaunchFilesToRemove();
    getLoginItemsToRemove();
}

LeftoversCleaner::Paths LeftoversCleaner::getAllPrefFiles() const {
    const std::string& folder = m_services.applications.preferencesPaths().front();
    Paths found;
    if (!m_services.part.includesUsersOwn())
        return found;
    auto walk = m_services.files.enumeratorAtPath(folder);
    while (const auto entry = walk.next()) {
        if (entry->type != FileType::Directory && isCandidate(lastPathComponent(entry->path)))
            found.push_back(joinedPath(folder, entry->path));
    }
    return found;
}

LeftoversCleaner::PathSet LeftoversCleaner::getPrefsOfNonexistentApps() const {
    if (m_allApps->applications().empty()) {
        // A volume without its applications: that says nothing about whose the preferences are.
        m_services.reportProblem(
            {ErrorKind::NotFound, {}, "no applications are known, so no preferences count as left over"});
        return {};
    }
    PathSet found;
    for (const auto& path : m_allPrefFiles) {
        if (!m_allApps->hasOwnerOfPreferences(nameWithoutExtension(path)))
            found.insert(path);
    }
    return found;
}

bool LeftoversCleaner::isNotUsedForWeeks(const std::string& path, int weeks) const {
    const auto attributes = m_services.files.attributesOfItemAtPath(path, Links::DontFollow);
    return attributes && std::time(nullptr) - attributes->modified.tv_sec > weeks * kWeek;
}

LeftoversCleaner::PathSet LeftoversCleaner::getPrefsNotUsedForWeeks(int weeks) const {
    PathSet found;
    std::ranges::copy_if(m_allPrefFiles, std::inserter(found, found.end()),
                         [&](const std::string& path) { return isNotUsedForWeeks(path, weeks); });
    return found;
}

std::unordered_set<std::string> LeftoversCleaner::namesOfStayingLaunchFiles() const {
    std::unordered_set<std::string> names;
    for (const auto& path : m_allLaunchFiles) {
        if (!m_launchFilesToRemove.contains(path))
            names.insert(lowercaseName(path));
    }
    return names;
}

LeftoversCleaner::PathSet LeftoversCleaner::getEqualPrefsFormLaunch() const {
    const auto names = namesOfStayingLaunchFiles();
    PathSet found;
    std::ranges::copy_if(m_allPrefFiles, std::inserter(found, found.end()),
                         [&](const std::string& path) { return names.contains(lowercaseName(path)); });
    return found;
}

const LeftoversCleaner::PathSet& LeftoversCleaner::getPrefFilesToRemove() {
    if (!m_prefFilesToRemove) {
        const auto names = namesOfStayingLaunchFiles();
        m_prefFilesToRemove = getPrefsOfNonexistentApps();
        // Only suspects are looked at any further: most preferences belong to somebody.
        std::erase_if(*m_prefFilesToRemove, [&](const std::string& path) {
            return names.contains(lowercaseName(path)) || !isNotUsedForWeeks(path, kWeeksUnused);
        });
    }
    return *m_prefFilesToRemove;
}

const LeftoversCleaner::PathSet& LeftoversCleaner::getLaunchFilesToRemove() {
    m_launchFilesToRemove.clear();
    for (const auto& path : m_allLaunchFiles) {
        if (!m_services.part.includes(path))
            continue;
        const auto definition = m_services.launchItems.definitionAtPath(path);
        if (!definition)
            m_services.reportProblem(definition.error());
        if (!definition || !definition->program || m_services.launchItems.isProgramMissing(*definition))
            m_launchFilesToRemove.insert(path);
    }
    return m_launchFilesToRemove;
}

Evidence LeftoversCleaner::evidenceOfLaunchFile(const std::string& path) const {
    const auto definition = m_services.launchItems.definitionAtPath(path);
    return {EvidenceRule::DeadLaunchItem, EvidenceStrength::Certain,
            definition ? definition->program.value_or(std::string()) : std::string()};
}

const LeftoversCleaner::Paths& LeftoversCleaner::getLoginItemsToRemove() {
    if (!m_loginItemsToRemove) {
        m_loginItemsToRemove.emplace();
        const bool isLookedAt = m_services.part.includesUsersOwn();
        for (const auto& item : isLookedAt ? m_services.loginItems.loginItemsList() : plist::Array()) {
            auto path = LoginItems::pathOf(item);
            if (!path.empty() && m_services.files.isMissingAtPath(path))
                m_loginItemsToRemove->push_back(std::move(path));
        }
    }
    return *m_loginItemsToRemove;
}

void LeftoversCleaner::deleteFile(const std::string& path) {
    ChangeRequest request{m_services.gate.isKeeping() ? Operation::Keep : Operation::Remove, path};
    request.module = "leftovers";
    const auto outcome = m_services.gate.perform(request);
    if (!outcome.isDone())
        m_services.reportProblem(outcome.error);
}

void LeftoversCleaner::removePrefFiles() {
    for (const auto& path : m_prefFilesToRemove.value_or(PathSet()))
        deleteFile(path);
    m_prefFilesToRemove = PathSet();
}

void LeftoversCleaner::removeLaunchFiles() {
    for (const auto& path : std::exchange(m_launchFilesToRemove, {}))
        m_services.launchItems.removeLaunchDaemon(path);
}

void LeftoversCleaner::removeLoginItems() {
    for (const auto& path : m_loginItemsToRemove.value_or(Paths()))
        deleteFile(path);
    m_loginItemsToRemove = Paths();
}

} // namespace sweeply
