#pragma once

#include "modules/uninstaller/agents/LaunchAgent.h"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace sweeply {

class Alerts;
class MainThread;
class NotificationCenter;
class SystemLog;
class SystemVersion;

/// Posted when a watcher was installed or removed: whoever shows them asks again.
struct WatchersChanged {};

/// The two agents that work while the program does not run: one looks at the Trash for applications, the other cleans
/// volumes as they are mounted. Both run the same small helper, of which a copy lies in the user's home while one of
/// them needs it. Failures are shown once and logged. Operations block and come one at a time; any thread.
class WatcherAgents final {
  public:
    struct Services {
        FileManager& files;
        const FolderConstants& folders;
        const SystemVersion& version;
        const ADTaskRunner& tasks;
        Alerts& alerts;
        MainThread& mainThread;
        NotificationCenter& notifications;
        SystemLog& log;
        /// The helper that came with the program, a host path.
        std::string helperTool;
    };

    static constexpr const char* kCleanTrashes = "-cleanTrashes";
    static constexpr const char* kCleanMacOSJunk = "-cleanMacOSJunk";
    static constexpr const char* kCleanWinJunk = "-cleanWinJunk";

    /// All outlive this.
    explicit WatcherAgents(Services services);

    // The helper

    /// Of the target.
    [[nodiscard]] std::string helperToolPath() const;
    /// What the installed copy says of itself; empty without one that answers.
    [[nodiscard]] std::string getTrashWatcherVersion() const;
    /// Is there one that answers with another version than ours?
    [[nodiscard]] bool shouldUpdateTrashWatcher() const;

    // The Trash

    bool installTrashWatcher();
    /// With `withTool` the helper goes too, unless the other watcher needs it.
    bool uninstallTrashWatcher(bool withTool = true);
    [[nodiscard]] bool trashWatcherInstalled() const { return m_trashWatcher.isLoaded(); }
    void setTrashWatcherInstalled(bool installed);

    // Volumes; switches are those above

    bool installVolumeWatcher() {
        return installVolumeWatcherForConfigs({kCleanTrashes, kCleanMacOSJunk, kCleanWinJunk});
    }
    bool installVolumeWatcherForConfigs(const std::vector<std::string>& switches);
    /// Takes one cleaner away; the others go on.
    bool uninstalVolumeWatcherForConfig(const std::string& cleaner);
    [[nodiscard]] bool volumeWatcherInstalled() const { return m_volumeWatcher.isLoaded(); }
    [[nodiscard]] bool volumeCleanerInstalled(const std::string& cleaner) const;
    void setVolumeCleanerInstalled(const std::string& cleaner, bool installed);

  private:
    Result<void> installHelperTool();
    Result<void> uninstallHelperTool();
    [[nodiscard]] Result<std::string> helperOnHost() const;
    Result<void> installTrash();
    Result<void> installVolume(const std::vector<std::string>& switches);
    Result<void> uninstallVolume(const std::string& cleaner);
    /// Shows and logs what went wrong, or tells that something changed. True on success.
    bool finish(const Result<void>& outcome, const char* title, const char* logLine);
    [[nodiscard]] std::vector<std::string> volumeSwitches() const;

    const Services m_services;
    std::mutex m_mutex;
    LaunchAgent m_trashWatcher;
    LaunchAgent m_volumeWatcher;
};

} // namespace sweeply
