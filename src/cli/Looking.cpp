#include "cli/Looking.h"

#include "app/ModuleCatalog.h"
#include "app/ModuleSelection.h"
#include "appcore/TargetPart.h"
#include "cli/Session.h"
#include "cli/TargetPaths.h"

#include <algorithm>
#include <map>

namespace sweeply {

namespace {

/// The named modules, each of which must take paths.
Result<std::vector<ADScanController*>> modulesForPaths(Session& session, const std::vector<std::string>& names) {
    if (names.empty())
        return Failure(Error{ErrorKind::Other, {}, "name the modules that shall look at these paths"});
    std::vector<ADScanController*> modules;
    for (const auto& row : scanModules()) {
        if (std::ranges::find(names, row.name) == names.end())
            continue;
        auto* module = session.application().scanController().moduleForViewCode(row.viewCode);
        if (!module->shouldRespondToDragEvents())
            return Failure(Error{ErrorKind::Other, std::string(row.name), "takes no paths"});
        modules.push_back(module);
    }
    return modules;
}

} // namespace

Result<Scope> scopeOf(Session& session) {
    const CommandLine& line = session.commandLine();
    Scope scope;
    if (line.wantsAllModules)
        scope.modules = everyModule();
    if (!line.operands.empty() || !line.paths.empty())
        scope.modules = line.operands;
    auto paths = targetPaths(session.application().target(), line.paths);
    if (!paths)
        return Failure(paths.error());
    scope.paths = *std::move(paths);
    return scope;
}

Result<void> look(Session& session, const Scope& scope) {
    if (scope.modules) {
        const auto switches = switchesNamed(*scope.modules);
        if (!switches)
            return Failure(switches.error());
        selectModules(session.application().scanController(), *switches);
    }
    const auto& part = session.application().target().share.part;
    if (!part.isEverything()) {
        narrowSelection(session.application().scanController(), part);
        if (selectedModules(session.application().scanController()).empty())
            return {};
    }
    if (scope.paths.empty()) {
        session.scan();
        return {};
    }
    const auto modules = modulesForPaths(session, scope.modules.value_or(std::vector<std::string>()));
    if (!modules)
        return Failure(modules.error());
    session.analyze(*modules, scope.paths);
    return {};
}

std::vector<ADScanController*> lookToUninstall(Session& session, const std::vector<std::string>& paths) {
    auto& application = session.application();
    application.startInventory(); // who else may claim what is found
    selectModules(application.scanController(), {});
    std::map<ADScanController*, std::vector<std::string>> byModule;
    for (const auto& path : paths) {
        auto* extension = application.extensions().uninstallControllerFor(path);
        byModule[extension ? static_cast<ADScanController*>(extension) : &moduleNamed(session, "uninstaller")]
            .push_back(path);
    }
    std::vector<ADScanController*> modules;
    for (const auto& [module, items] : byModule) {
        session.analyze({module}, items);
        modules.push_back(module);
    }
    return modules;
}

ADScanController& moduleNamed(Session& session, std::string_view name) {
    const auto row = std::ranges::find(moduleCatalog(), name, &ModuleRow::name);
    return *session.application().scanController().moduleForViewCode(row->viewCode);
}

} // namespace sweeply
