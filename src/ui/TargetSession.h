#pragma once

#include "app/ADApp.h"
#include "app/Application.h"
#include "app/OutsideRequests.h"
#include "app/QuitController.h"
#include "app/SpecialCommands.h"
#include "appcore/processes/LaunchDatabase.h"
#include "modules/uninstaller/agents/WatcherAgents.h"
#include "platform/SystemLog.h"
#include "ui/DesktopNotes.h"
#include "ui/DialogAlerts.h"
#include "ui/QtMainThread.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sweeply {

/// What the window is made of besides its widgets; one for the process. Main thread.
struct Desktop {
    QtMainThread mainThread;
    DialogAlerts alerts;
    DesktopNotes notes;
    SyslogLog log;
};

/// Among the window's settings: does the work rest after each item, from the next time on that a target is opened?
inline constexpr const char* kRestsBetweenItems = "restsBetweenItems";

/// What the window does when the engine wants something of it.
struct WindowHooks {
    std::function<void()> showUninstaller;
    std::function<void()> showDroppedFiles;
    std::function<void()> showLanguagePreferences;
    std::function<void()> activate;
    std::function<void()> quit;
    std::function<bool()> isShowingScanView;
    /// The target's path of a file of this machine; says so and gives nothing for one that is not in the target.
    std::function<std::optional<std::string>(const std::string&)> targetPath;
};

/// The program at work on one target: the engine, its watchers on this machine, requests from outside. Main thread.
class TargetSession final : private Watchers {
  public:
    /// `desktop` outlives this. `arguments` are the process's own.
    TargetSession(Target target, Desktop& desktop, std::vector<std::string> arguments, WindowHooks hooks);
    ~TargetSession() override;

    [[nodiscard]] Application& application() { return m_application; }
    [[nodiscard]] QuitController& quitController() { return m_quitController; }
    /// Only where the target is this machine: elsewhere nothing of ours is to be started.
    [[nodiscard]] WatcherAgents* watcherAgents() { return m_watcherAgents.get(); }
    [[nodiscard]] LaunchDatabase& launchDatabase() { return m_launchDatabase; }
    /// Takes files to open from now on, those on the command line first. False when a Sweeply runs already and has got
    /// them.
    bool takeRequests(const std::vector<std::string>& files);
    void droppedFilesAreDone() { m_commands.finishProcessingDraggedFiles(); }

  private:
    void offerInstallation();
    [[nodiscard]] bool shouldUpdateTrashWatcher() const override;
    void installTrashWatcher() override;
    void installVolumeWatcher() override;

    Desktop& m_desktop;
    const WindowHooks m_hooks;
    Application m_application;
    ToolTable m_tools;
    ADTaskRunner m_tasks;
    LaunchDatabase m_launchDatabase;
    std::unique_ptr<WatcherAgents> m_watcherAgents;
    ADApp m_app;
    QuitController m_quitController;
    SpecialCommands m_commands;
    std::optional<OutsideRequests> m_requests;
};

} // namespace sweeply
