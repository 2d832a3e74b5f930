#include "ui/TargetSession.h"

#include "app/DiskImage.h"
#include "app/ModuleCatalog.h"
#include "app/OwnProcess.h"
#include "platform/TargetPath.h"
#include "ui/Text.h"

#include <QDir>
#include <QSettings>
#include <utility>

namespace sweeply {

namespace {

Pace chosenPace() {
    return QSettings().value(QLatin1String(kRestsBetweenItems)).toBool() ? Pace::gentle() : Pace::full();
}

} // namespace

TargetSession::TargetSession(Target target, Desktop& desktop, std::vector<std::string> arguments, WindowHooks hooks)
    : m_desktop(desktop), m_hooks(std::move(hooks)),
      m_application(std::move(target),
                    {desktop.mainThread, desktop.alerts, desktop.notes, desktop.log, chosenPace(),
                     besideProgram("libexec"), besideProgram("share"), false, m_hooks.showLanguagePreferences}),
      m_tools(besideProgram("libexec"), *m_application.target().files), m_tasks(m_tools, desktop.log),
      m_launchDatabase({*m_application.target().files, m_application.target().folders, m_application.target().version,
                        m_tasks, desktop.mainThread, desktop.log}),
      m_watcherAgents(m_application.target().files->isHostRoot()
                          ? std::make_unique<WatcherAgents>(
                                WatcherAgents::Services{*m_application.target().files, m_application.target().folders,
                                                        m_application.target().version, m_tasks, desktop.alerts,
                                                        desktop.mainThread, m_application.notifications(), desktop.log,
                                                        joinedPath(besideProgram("libexec"), "SweeplyHelperTool")})
                          : nullptr),
      m_app(m_application, *this, desktop.log, std::move(arguments)),
      m_quitController(m_application.scanController(), desktop.alerts, desktop.log,
                       {m_hooks.isShowingScanView, [this] { offerInstallation(); },
                        [&log = desktop.log] { killOurselves(besideProgram("bin"), log); }}),
      m_commands(m_application.defaults(), m_application.target().version, desktop.alerts, desktop.log,
                 {[this](const std::vector<std::string>& paths) {
                      m_hooks.showUninstaller();
                      m_application.scanController().moduleForViewCode(kUninstallerView)->receiveDragData(paths);
                  },
                  [this](const std::string& path) {
                      if (const auto inTarget = m_hooks.targetPath(path))
                          m_application.draggedFiles().addFileToListWithPath(*inTarget);
                  },
                  m_hooks.showDroppedFiles, m_hooks.quit}) {
    m_application.draggedFiles().setFinished([this] { droppedFilesAreDone(); });
    m_app.start(ADApp::Face::Window);
}

TargetSession::~TargetSession() = default;

bool TargetSession::takeRequests(const std::vector<std::string>& files) {
    m_requests.emplace(m_commands, m_desktop.mainThread, m_desktop.log, m_hooks.activate);
    return m_requests->start(files);
}

void TargetSession::offerInstallation() {
    const auto bundle = m_app.runningFromDMG() ? bundleOfProgram(ownProgram(), utf8(QDir::homePath())) : std::nullopt;
    if (bundle)
        handleApplicationLaunchFromDiskImage(*bundle, m_desktop.alerts);
}

bool TargetSession::shouldUpdateTrashWatcher() const {
    return m_watcherAgents && m_watcherAgents->shouldUpdateTrashWatcher();
}

void TargetSession::installTrashWatcher() {
    if (m_watcherAgents)
        m_watcherAgents->installTrashWatcher();
}

void TargetSession::installVolumeWatcher() {
    if (m_watcherAgents)
        m_watcherAgents->installVolumeWatcher();
}

} // namespace sweeply
