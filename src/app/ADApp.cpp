#include "app/ADApp.h"

#include "app/Application.h"
#include "app/DiskImage.h"
#include "engine/CoordinatorPreferences.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"

#include <utility>

namespace sweeply {

ADApp::ADApp(Application& application, Watchers& watchers, SystemLog& log, std::vector<std::string> arguments)
    : m_application(application), m_watchers(watchers), m_log(log), m_arguments(std::move(arguments)),
      m_runningFromDMG(applicationIsRunningFromDiskImage()) {}

ADApp::~ADApp() = default;

void ADApp::start(Face face) {
    m_log.log(formatText("Sweeply v. %@ started with arguments %@.", {SWEEPLY_VERSION, listForLog(m_arguments)}));
    m_application.sweepTemporaryFiles();
    m_application.ignoreList().load();
    initUserDefaults();
    if (face == Face::Window) {
        m_application.startInventory();
        m_application.ignoreList().startInBackground();
    }
}

void ADApp::initUserDefaults() {
    auto& defaults = m_application.defaults();
    registerDefaults(defaults, coordinator::kPreferences);
    m_application.languageKeepList().updateAppleLanguageList();
    m_application.scanController().setUseSecureErase(defaults.boolForKey(coordinator::kUseSecureErase));
    if (!m_runningFromDMG)
        installWatchers();
    (void)defaults.synchronize(); // a failure is logged by the preferences themselves
}

void ADApp::installWatchers() {
    auto& defaults = m_application.defaults();
    const auto install = [this](void (Watchers::*installation)()) {
        m_installations.emplace_back([this, installation] { (m_watchers.*installation)(); });
    };
    const bool hadVolumeWatcher = defaults.objectForKey(coordinator::kFirstVolumeCleaner).has_value();
    const bool hadTrashWatcher = defaults.objectForKey(coordinator::kFirstAutomaticAppUninstaller).has_value();
    if (hadVolumeWatcher && hadTrashWatcher) {
        if (m_watchers.shouldUpdateTrashWatcher()) {
            m_log.log("Will update launch daemon");
            install(&Watchers::installTrashWatcher);
        }
        return;
    }
    if (!hadTrashWatcher) {
        defaults.setBool(coordinator::kFirstAutomaticAppUninstaller, true);
        m_log.log("Will install launch daemon for application uninstallation");
        install(&Watchers::installTrashWatcher);
    }
    if (!hadVolumeWatcher) {
        defaults.setBool(coordinator::kFirstVolumeCleaner, true);
        m_log.log("Will install launch daemon for volume cleaner with all options on");
        install(&Watchers::installVolumeWatcher);
    }
}

} // namespace sweeply
