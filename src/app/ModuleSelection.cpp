#include "app/ModuleSelection.h"

#include "app/ModuleCatalog.h"
#include "engine/ADScanControllerView.h"
#include "engine/ScanController.h"

#include <algorithm>

namespace sweeply {

namespace {

/// Every name that a person may use, for telling them.
std::string knownNames() {
    std::string names;
    for (const auto& row : scanModules()) {
        names += (names.empty() ? "" : ", ") + std::string(row.name);
        for (const auto& part : row.switches) {
            if (part.name != row.name)
                names += ", " + std::string(part.name);
        }
    }
    return names;
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
        return Failure(
            Error{ErrorKind::NotFound, std::string(unknown.front()), "no such module; there are " + knownNames()});
    return found;
}

std::vector<std::string> allSwitches() {
    std::vector<std::string> all;
    for (const auto& row : scanModules()) {
        for (const auto& part : row.switches)
            all.emplace_back(part.defaultsName);
    }
    return all;
}

void selectModules(ScanController& controller, const std::vector<std::string>& switches) {
    for (const auto& row : controller.rows()) {
        for (auto* module : row->correspondingScanController()->parts()) {
            const bool isSelected = std::ranges::find(switches, module->defaultsName()) != switches.end();
            module->rootNode()->setEnabledWithoutRecalc(isSelected);
        }
    }
    controller.refreshInterface();
}

} // namespace sweeply
