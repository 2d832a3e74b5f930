#include "ui/WeakMatchesBox.h"

#include "app/Application.h"
#include "modules/uninstaller/ApplicationUninstaller.h"
#include "modules/uninstaller/UninstallPreferences.h"
#include "ui/Text.h"

namespace sweeply {

WeakMatchesBox::WeakMatchesBox(Application& application) : m_application(application) {
    setText(localized("Check weak matches too"));
    setToolTip(localized("Items of which only a part of the name matches, and that no other application claims."));
    setChecked(application.defaults().boolForKey(uninstaller::kCheckWeakMatches));
    connect(this, &QCheckBox::toggled, this, [this](bool isOn) {
        m_application.defaults().setBool(uninstaller::kCheckWeakMatches, isOn);
        auto& uninstaller = m_application.applicationUninstaller();
        uninstaller.reconsiderClaims();
        uninstaller.updateInterfaceAndWaitUntilDone(false);
    });
}

void WeakMatchesBox::refresh() {
    const auto& controller = m_application.scanController();
    setEnabled(!controller.ifScanRunning() && !controller.ifCleanRunning());
}

} // namespace sweeply
