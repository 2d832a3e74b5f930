#include "modules/uninstaller/UninstallQuestion.h"

#include "engine/record/ChangeRuns.h"
#include "formats/DisplayEscapes.h"
#include "modules/uninstaller/UninstallPreferences.h"
#include "modules/uninstaller/UninstallSteps.h"
#include "platform/Alerts.h"
#include "platform/Localization.h"
#include "platform/UserDefaults.h"

namespace sweeply {

bool UninstallQuestion::confirms(const ADScanController& module) {
    Alert alert;
    alert.title = localizedString("Uninstall selected objects?");
    alert.text = localizedString("Are you sure you want to uninstall selected objects?");
    alert.buttons = {localizedButton("Yes"), localizedButton("Cancel")};
    alert.safeButton = 1;
    alert.checkBox = keepingBox();
    const auto obstacles = m_services.steps.obstaclesToKeeping(module);
    for (const auto& obstacle : obstacles)
        alert.text +=
            "\n" + localizedFormat("%@ cannot be kept: %@", {escapedForDisplay(obstacle.path), obstacle.reason});
    const auto answer = m_services.alerts.runAlert(alert);
    if (answer.button != 0)
        return false;
    settleKeeping(answer.isBoxChecked, obstacles);
    return true;
}

AlertCheckBox UninstallQuestion::keepingBox() const {
    return {localizedFormat("Keep for %i days, so that it can be put back (frees no space until then)",
                            {m_services.runs.daysOfKeeping()}),
            !m_services.defaults.objectForKey(uninstaller::kKeepUninstalled) ||
                m_services.defaults.boolForKey(uninstaller::kKeepUninstalled)};
}

void UninstallQuestion::settleKeeping(bool keeps, const std::vector<Error>& obstacles) {
    if (keeps != keepingBox().isChecked) {
        m_services.defaults.setBool(uninstaller::kKeepUninstalled, keeps);
        (void)m_services.defaults.synchronize(); // a failure is logged by the preferences themselves
    }
    m_services.runs.setKeeping(keeps ? keepingDespite(obstacles) : Keeping::Off);
}

} // namespace sweeply
