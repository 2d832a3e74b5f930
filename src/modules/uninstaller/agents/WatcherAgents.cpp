#include "modules/uninstaller/agents/WatcherAgents.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "platform/Alerts.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/NotificationCenter.h"
#include "platform/StringExtras.h"
#include "platform/SystemLog.h"
#include "platform/SystemVersion.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kVersion = "1.2";
constexpr const char* kSupport = "~/Library/Application Support/Sweeply";
constexpr mode_t kProgramMode = 0755;

Failure because(std::string reason) { return Failure(Error{ErrorKind::Other, {}, std::move(reason)}); }

} // namespace

WatcherAgents::WatcherAgents(Services services)
    : m_services(std::move(services)),
      m_trashWatcher(m_services.files, m_services.folders, m_services.tasks, "com.brindle.Sweeply.helperTool"),
      m_volumeWatcher(m_services.files, m_services.folders, m_services.tasks, "com.brindle.Sweeply.volumeWatcher") {}

// The helper

std::string WatcherAgents::helperToolPath() const {
    return joinedPath(m_services.folders.expandTilde(kSupport), "SweeplyHelperTool");
}

Result<std::string> WatcherAgents::helperOnHost() const { return m_services.files.hostPath(helperToolPath()); }

std::string WatcherAgents::getTrashWatcherVersion() const {
    const auto tool = helperOnHost();
    const auto output = tool ? m_services.tasks.getOutput(*tool, {"-v"}) : std::nullopt;
    return std::string(trimWhiteSpace(output.value_or(std::string())));
}

bool WatcherAgents::shouldUpdateTrashWatcher() const {
    const auto version = getTrashWatcherVersion();
    m_services.log.log(formatText("Found launch daemon at %@ version %@", {helperToolPath(), version}));
    return !version.empty() && version != kVersion;
}

Result<void> WatcherAgents::installHelperTool() {
    const std::string folder = m_services.folders.expandTilde(kSupport);
    if (!m_services.files.createDirectoryAtPath(folder))
        return because(localizedFormat("Couldn't create directory for Sweeply helper tool: %@\nTry to create it "
                                       "manually and repeat the installation.",
                                       {folder}));
    std::ifstream resource(m_services.helperTool, std::ios::binary);
    std::ostringstream bytes;
    const bool isRead = resource && (bytes << resource.rdbuf());
    (void)m_services.files.removeItemAtPath(helperToolPath()); // its mode must not be kept
    if (!isRead || !m_services.files.writeAtomically(helperToolPath(), bytes.str(), kProgramMode))
        return because(localizedFormat("Failed to copy launch agent to %@", {helperToolPath()}));
    return {};
}

Result<void> WatcherAgents::uninstallHelperTool() {
    if (trashWatcherInstalled() || volumeWatcherInstalled())
        return {};
    const auto removed = m_services.files.removeItemAtPath(helperToolPath());
    if (!removed && removed.error().kind != ErrorKind::NotFound)
        return because(localizedString("Failed to delete launch agent or configuration."));
    return {};
}

bool WatcherAgents::finish(const Result<void>& outcome, const char* title, const char* logLine) {
    if (outcome) {
        m_services.notifications.post(WatchersChanged{});
        return true;
    }
    m_services.log.log(formatText(logLine, {outcome.error().reason}));
    Alert alert;
    alert.title = localizedString(title);
    alert.text = outcome.error().reason;
    alert.buttons = {localizedButton("OK")};
    m_services.mainThread.runAndWait([&] { m_services.alerts.runAlert(alert); });
    return false;
}

// The Trash

Result<void> WatcherAgents::installTrash() {
    if (!m_trashWatcher.uninstall())
        return because(localizedString("Failed to uninstall previous version of Sweeply helper tool. Try to uninstall "
                                       "it manually."));
    if (auto installed = installHelperTool(); !installed)
        return installed;
    const auto tool = helperOnHost();
    const auto trash = m_services.files.hostPath(m_services.folders.home);
    if (!tool || !trash)
        return because(localizedString("Failed to load launch agent configuration"));
    return m_trashWatcher.install(plist::Dictionary({{"Label", m_trashWatcher.label()},
                                                     {"ProgramArguments", plist::arrayOf({*tool})},
                                                     {"OnDemand", true},
                                                     {"RunAtLoad", false},
                                                     {"WatchPaths", plist::arrayOf({joinedPath(*trash, ".Trash")})}}));
}

bool WatcherAgents::installTrashWatcher() {
    const std::lock_guard lock(m_mutex);
    m_services.log.log(formatText("Installing Trash Watcher Tool to %@", {helperToolPath()}));
    const bool isDone = finish(installTrash(), translatable("Couldn't activate automatic application uninstaller"),
                               "Exception while installing launch daemon %@");
    if (isDone)
        m_services.log.log("Finished installation of trash watcher");
    return isDone;
}

bool WatcherAgents::uninstallTrashWatcher(bool withTool) {
    const std::lock_guard lock(m_mutex);
    m_services.log.log(formatText("Uninstalling Trash Watcher from %@", {helperToolPath()}));
    auto outcome = m_trashWatcher.uninstall();
    if (outcome && withTool)
        outcome = uninstallHelperTool();
    const bool isDone = finish(outcome, translatable("Couldn't deactivate automatic application uninstaller"),
                               "Exception while uninstalling launch daemon %@");
    if (isDone)
        m_services.log.log("Finished uninstallation of trash watcher");
    return isDone;
}

void WatcherAgents::setTrashWatcherInstalled(bool installed) {
    if (installed)
        installTrashWatcher();
    else
        uninstallTrashWatcher();
}

// Volumes

std::vector<std::string> WatcherAgents::volumeSwitches() const {
    if (!m_services.files.attributesOfItemAtPath(m_volumeWatcher.configurationPath(), Links::DontFollow))
        return {};
    auto arguments = m_volumeWatcher.programArguments();
    if (!arguments)
        m_services.log.log(
            formatText("Failed to parse launch agent config at path %@", {m_volumeWatcher.configurationPath()}));
    if (!arguments || arguments->empty())
        return {};
    arguments->erase(arguments->begin()); // the helper itself
    return *std::move(arguments);
}

Result<void> WatcherAgents::installVolume(const std::vector<std::string>& switches) {
    auto all = volumeSwitches();
    for (const auto& cleaner : switches) {
        if (std::ranges::find(all, cleaner) == all.end())
            all.push_back(cleaner);
    }
    if (auto installed = installHelperTool(); !installed)
        return installed;
    const auto tool = helperOnHost();
    if (!tool || !m_volumeWatcher.uninstall())
        return because(localizedString("Failed to uninstall previous version of Sweeply helper tool. Try to uninstall "
                                       "it manually."));
    if (all.empty()) {
        m_services.log.log(formatText("No arguments specified for tool. New args %@", {*tool}));
        return {};
    }
    all.insert(all.begin(), *tool);
    std::vector<plist::Dictionary::Member> members{{"Label", m_volumeWatcher.label()},
                                                   {"ProgramArguments", plist::arrayOf(all)}};
    if (m_services.version.isTiger()) {
        members.emplace_back("RunAtLoad", true);
        members.emplace_back("OnDemand", false);
    } else {
        members.emplace_back("StartOnMount", true);
        members.emplace_back("RunAtLoad", false);
        members.emplace_back("OnDemand", true);
    }
    return m_volumeWatcher.install(plist::Dictionary(std::move(members)));
}

bool WatcherAgents::installVolumeWatcherForConfigs(const std::vector<std::string>& switches) {
    const std::lock_guard lock(m_mutex);
    m_services.log.log(formatText("Installing Volume Watcher Tool to %@", {helperToolPath()}));
    const bool isDone =
        finish(installVolume(switches), translatable("Couldn't activate automatic application uninstaller"),
               "Exception while installing launch daemon %@");
    if (isDone)
        m_services.log.log("Finished installation of volume watcher");
    return isDone;
}

Result<void> WatcherAgents::uninstallVolume(const std::string& cleaner) {
    auto left = volumeSwitches();
    std::erase(left, cleaner);
    if (auto gone = m_volumeWatcher.uninstall(); !gone)
        return gone;
    if (!left.empty())
        return installVolume(left);
    return uninstallHelperTool();
}

bool WatcherAgents::uninstalVolumeWatcherForConfig(const std::string& cleaner) {
    const std::lock_guard lock(m_mutex);
    m_services.log.log(formatText("Uninstalling Volume Watcher from %@", {helperToolPath()}));
    const bool isDone =
        finish(uninstallVolume(cleaner), translatable("Couldn't deactivate automatic application uninstaller"),
               "Exception while uninstalling launch daemon %@");
    if (isDone)
        m_services.log.log("Finished uninstallation of volume watcher");
    return isDone;
}

bool WatcherAgents::volumeCleanerInstalled(const std::string& cleaner) const {
    const auto arguments = m_volumeWatcher.programArguments();
    return arguments && std::ranges::find(*arguments, cleaner) != arguments->end() && volumeWatcherInstalled();
}

void WatcherAgents::setVolumeCleanerInstalled(const std::string& cleaner, bool installed) {
    if (installed)
        installVolumeWatcherForConfigs({cleaner});
    else
        uninstalVolumeWatcherForConfig(cleaner);
}

} // namespace sweeply
