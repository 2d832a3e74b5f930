#include "app/SpecialCommands.h"

#include "engine/CoordinatorPreferences.h"
#include "platform/Alerts.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/SystemVersion.h"
#include "platform/UserDefaults.h"

#include <utility>

namespace sweeply {

namespace {

constexpr const char* kUninstall = "uninstall";

} // namespace

SpecialCommands::SpecialCommands(UserDefaults& defaults, const SystemVersion& version, Alerts& alerts, SystemLog& log,
                                 RequestDestinations destinations)
    : m_defaults(defaults), m_version(version), m_alerts(alerts), m_log(log), m_destinations(std::move(destinations)) {}

void SpecialCommands::openFile(const std::string& path) {
    if (path == kUninstall) {
        m_processingSpecialCommandFiles = true;
        m_specialCommandFiles.clear();
    } else if (m_processingSpecialCommandFiles) {
        m_specialCommandFiles.push_back(path);
    } else {
        m_destinations.addFileToList(path);
        if (!std::exchange(m_processingDroppedFiles, true))
            m_destinations.showFileList();
    }
}

void SpecialCommands::processSpecialCommands() {
    if (!m_processingSpecialCommandFiles)
        return;
    const bool goesOn = m_defaults.boolForKey(coordinator::kDontShowUninstallAlert) || explain();
    m_processingSpecialCommandFiles = false;
    const auto files = std::exchange(m_specialCommandFiles, {});
    if (goesOn)
        m_destinations.uninstall(files);
    else
        m_destinations.quit();
}

bool SpecialCommands::explain() {
    // The oldest systems' alerts have no check box: there it is shown once and never again.
    const bool canSuppress = !m_version.isTiger();
    Alert alert;
    alert.title = localizedString("Sweeply automatical application uninstall");
    alert.text = localizedString(
        "You have just attempted to remove an application by simply trashing it. Sweeply has launched automatically in "
        "order to help you uninstall the application correctly. This feature can be disabled in the Advanced tab of "
        "Sweeply Preferences.");
    alert.buttons = {localizedButton("Ok"), localizedButton("Quit")};
    alert.safeButton = 1;
    if (canSuppress)
        alert.checkBox = {localizedString("Do not show this message again")};
    const auto answer = m_alerts.runAlert(alert);
    if (answer.isBoxChecked || !canSuppress)
        m_defaults.setBool(coordinator::kDontShowUninstallAlert, true);
    (void)m_defaults.synchronize(); // a failure is logged by the preferences themselves
    return answer.button == 0;
}

void SpecialCommands::uninstallApplications(const std::optional<UninstallNotification>& notification) {
    if (!notification) {
        m_log.log("Got notification with empty userInfo");
        return;
    }
    m_log.log(formatText("Got distributed notification cmd = %@ applications = %@",
                         {notification->command, listForLog(notification->applications)}));
    if (notification->command == kUninstall)
        m_destinations.uninstall(notification->applications);
}

} // namespace sweeply
