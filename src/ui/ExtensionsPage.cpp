#include "ui/ExtensionsPage.h"

#include "modules/extensions/ExtensionsScanController.h"
#include "ui/ResultPage.h"
#include "ui/Text.h"

namespace sweeply {

ExtensionsPage::ExtensionsPage(ExtensionsScanController& extensions, const MakePage& makePage) {
    setAccessibleName(localized("Extensions"));
    const auto add = [&](ADScanControllerView& module, const QString& title, const QString& hint) {
        addTab(makePage(module, title, hint), title);
    };
    const auto& uninstallers = extensions.uninstallControllers();
    add(extensions.cleanerController(), localized("Leftovers"), localized("Nothing found yet. Press Scan."));
    add(*uninstallers[0], localized("Widgets"), localized("No widgets are installed."));
    add(*uninstallers[1], localized("Preference Panes"), localized("No preference panes are installed."));
    add(*uninstallers[2], localized("Plug-ins"), localized("No plug-ins are installed."));
    connect(this, &QTabWidget::currentChanged, this, [&extensions](int tab) {
        constexpr std::string_view kTabs[] = {"", ExtensionsScanController::kWidgetsTab,
                                              ExtensionsScanController::kPreferencesTab,
                                              ExtensionsScanController::kPluginsTab};
        extensions.didSelectTabViewItem(kTabs[tab]);
    });
}

} // namespace sweeply
