#include "app/ModuleSelection.h"

#include "app/ModuleCatalog.h"
#include "appcore/TargetPart.h"
#include "engine/ADScanControllerView.h"
#include "engine/ScanController.h"
#include "platform/Suggestion.h"

#include <algorithm>

namespace sweeply {

namespace {

Failure noSuchModule(std::string_view name) {
    std::vector<std::string> known;
    std::string list;
    for (const auto& row : scanModules()) {
        known.emplace_back(row.name);
        for (const auto& part : row.switches) {
            if (part.name != row.name)
                known.emplace_back(part.name);
        }
    }
    for (const auto& each : known)
        list += (list.empty() ? "" : ", ") + each;
    return Failure(Error{ErrorKind::NotFound, std::string(name),
                         "no such module" + suggestionFor(name, known) + "; there are " + list});
}

} // namespace

Result<std::vector<std::string>> switchesNamed(const std::vector<std::string>& names) {
    std::vector<std::string> found;
    std::vector<std::string_view> unknown(names.begin(), names.end());
    for (const auto& row : scanModules()) {
        const bool isRowNamed = std::ranges::find(names, row.name) != names.end();
        std::erase(unknown, row.name);
        for (const auto& part : row.switches) {
            if (isRowNamed || std::ranges::find(names, part.name) != names.end())
                found.emplace_back(part.defaultsName);
            std::erase(unknown, part.name);
        }
    }
    if (!unknown.empty())
        return noSuchModule(unknown.front());
    return found;
}

std::vector<std::string> everyModule() {
    std::vector<std::string> names;
    for (const auto& row : scanModules())
        names.emplace_back(row.name);
    return names;
}

void selectModules(ScanController& controller, const std::vector<std::string>& switches) {
    for (const auto& row : controller.rows()) {
        for (auto* module : row->correspondingScanController()->parts()) {
            module->setTakesPartInScan(std::ranges::find(switches, module->defaultsName()) != switches.end());
        }
    }
    controller.refreshInterface();
}

std::vector<std::string> switchesFor(const TargetPart& part, std::vector<std::string> switches) {
    for (const auto& row : scanModules()) {
        for (const auto& module : row.switches) {
            if ((module.findsIn == FindsIn::UsersOwn && !part.includesUsersOwn()) ||
                (module.findsIn == FindsIn::Machines && !part.includesMachines()))
                std::erase(switches, module.defaultsName);
        }
    }
    return switches;
}

void narrowSelection(ScanController& controller, const TargetPart& part) {
    std::vector<std::string> switches;
    for (const auto& row : controller.rows()) {
        for (const auto* module : row->correspondingScanController()->parts()) {
            if (module->takesPartInScan() && !module->defaultsName().empty())
                switches.push_back(module->defaultsName());
        }
    }
    selectModules(controller, switchesFor(part, std::move(switches)));
}

std::vector<std::string> selectedModules(const ScanController& controller) {
    std::vector<std::string> names;
    for (const auto& row : controller.rows()) {
        for (const auto* module : row->correspondingScanController()->parts()) {
            if (module->needToSetUserDefalts() && module->takesPartInScan())
                names.emplace_back(module->moduleName());
        }
    }
    return names;
}

} // namespace sweeply
