#include "ui/ExtensionsPage.h"

#include "engine/ScanObject.h"
#include "modules/extensions/ExtensionsScanController.h"
#include "ui/ResultPage.h"
#include "ui/Text.h"

namespace sweeply {

ExtensionsPage::ExtensionsPage(ExtensionsScanController& extensions, const MakePage& makePage) {
    setAccessibleName(localized("Extensions"));
    const auto add = [&](ADScanControllerView& module, const QString& title, const QString& hint,
                         const QString& purpose) {
        auto* page = makePage(module, title, hint);
        page->setPurpose(purpose);
        addTab(page, title);
    };
    const auto& uninstallers = extensions.uninstallControllers();
    add(extensions.cleanerController(), localized("Leftovers"), localized("Nothing found yet. Press Scan."),
        QString::fromStdString(extensions.scanObject()->purpose()));
    add(*uninstallers[0], localized("Widgets"), localized("No widgets are installed."),
        localized("Lists the installed widgets; each goes with its preferences."));
    add(*uninstallers[1], localized("Preference Panes"), localized("No preference panes are installed."),
        localized("Lists what was added to the system's preferences; each goes with what belongs to it."));
    add(*uninstallers[2], localized("Plug-ins"), localized("No plug-ins are installed."),
        localized("Lists what adds something to the system or to other programs, by kind."));
    connect(this, &QTabWidget::currentChanged, this, [&extensions](int tab) {
        constexpr std::string_view kTabs[] = {"", ExtensionsScanController::kWidgetsTab,
                                              ExtensionsScanController::kPreferencesTab,
                                              ExtensionsScanController::kPluginsTab};
        extensions.didSelectTabViewItem(kTabs[tab]);
    });
}

} // namespace sweeply
