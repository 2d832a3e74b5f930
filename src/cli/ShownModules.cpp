#include "cli/ShownModules.h"

#include "app/Application.h"
#include "app/ModuleCatalog.h"
#include "platform/Localization.h"

#include <algorithm>
#include <array>

namespace sweeply {

namespace {

struct ExtensionList {
    std::string_view name;
    const char* title;
};
/// In the order of the container's uninstallers.
constexpr std::array kExtensionLists{
    ExtensionList{"widget-uninstaller", translatable("Widgets")},
    ExtensionList{"pane-uninstaller", translatable("Preference Panes")},
    ExtensionList{"plugin-uninstaller", translatable("Plug-ins")},
};

} // namespace

std::vector<ShownModule> extensionLists(Application& application) {
    auto& extensions = application.extensions();
    std::vector<ShownModule> lists;
    for (std::size_t list = 0; list < kExtensionLists.size(); ++list) {
        auto& module = *extensions.uninstallControllers()[list];
        lists.push_back({kExtensionLists[list].name, localizedString(kExtensionLists[list].title),
                         extensions.scanObject()->viewName(), module.ifAnyEnabled(), module});
    }
    return lists;
}

std::vector<ShownModule> shownModules(Application& application) {
    std::vector<ShownModule> shown;
    for (const auto& row : application.scanController().rows()) {
        auto* module = row->correspondingScanController();
        // What was looked at because it was named may have something checked whatever the switch says.
        const bool isChecked = row->checked() || module->ifAnyEnabled();
        if (isChecked || module->filesFound() > 0) {
            const auto known = std::ranges::find(moduleCatalog(), row->viewName(), &ModuleRow::viewCode);
            shown.push_back({known->name, row->name(), row->viewName(), isChecked, module->shownController()});
        }
        if (module != &application.extensions())
            continue;
        for (const auto& list : extensionLists(application)) {
            if (list.module.filesFound() > 0 && &list.module != &module->shownController())
                shown.push_back(list);
        }
    }
    return shown;
}

ShownTotals totalsOf(const std::vector<ShownModule>& modules) {
    ShownTotals totals;
    for (const auto& shown : modules) {
        totals.totalSize += shown.module.totalSize();
        totals.foundSize += shown.module.ifAnyEnabled() ? shown.module.totalSize() : 0;
        totals.filesFound += shown.module.filesFound();
        totals.filesFoundInEnabled += shown.module.filesFoundInEnabled();
    }
    return totals;
}

} // namespace sweeply
