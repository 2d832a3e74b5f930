#include "app/ModuleCatalog.h"
#include "app/ModuleSelection.h"
#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"
#include "formats/Utf8.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

namespace sweeply {

namespace {

Json textOrNull(const std::optional<std::string>& text) { return text ? Json(validUtf8(*text)) : Json(nullptr); }

Result<void> saveSettings(Session& session) { return session.application().defaults().synchronize(); }

/// Switches the modules; a row's name stands for those of its parts that are on by default when it is switched on, so
/// that nobody switches the machine-wide ones on by accident, and for all of them when it is switched off.
Result<void> switchModules(Session& session, const std::vector<std::string>& names, bool isOn) {
    const auto named = switchesNamed(names);
    if (!named)
        return Failure(named.error());
    for (const auto& row : scanModules()) {
        const bool isRowNamed = std::ranges::find(names, row.name) != names.end();
        for (const auto& part : row.switches) {
            const bool isPartNamed = std::ranges::find(names, part.name) != names.end();
            if (isPartNamed || (isRowNamed && (part.isOnByDefault || !isOn)))
                session.application().defaults().setBool(part.defaultsName, isOn);
        }
    }
    return {};
}

Json moduleSwitchesJson(const Application& application, const UserDefaults& defaults) {
    Json list = Json::array();
    for (const auto& row : scanModules()) {
        Json parts = Json::array();
        for (const auto& part : row.switches)
            parts.push_back({{"module", part.name},
                             {"key", part.defaultsName},
                             {"enabled", defaults.boolForKey(part.defaultsName)}});
        list.push_back({{"module", row.name}, {"viewCode", row.viewCode}, {"modules", parts}});
    }
    return {{"target", targetJson(application)}, {"modules", list}};
}

} // namespace

ExitCode runApps(Session& session) {
    auto& application = session.application();
    application.startInventory();
    auto filtered = application.applications().createApplicationsArrayForController(nullptr);
    std::ranges::sort(filtered);
    if (!session.commandLine().wantsJson) {
        std::vector<std::vector<std::string>> rows;
        for (const auto& path : filtered)
            rows.push_back({path, application.applications().bundleIDForAppWithPath(path).value_or("-")});
        printColumns(std::cout, session.style(), rows);
        return ExitCode::Done;
    }
    Json applications = Json::array();
    for (const auto& path : filtered)
        applications.push_back({{"path", validUtf8(path)},
                                {"bundleID", textOrNull(application.applications().bundleIDForAppWithPath(path))},
                                {"name", textOrNull(application.applications().appNameForAppWithPath(path))}});
    Json all = Json::array();
    for (const auto& path : application.applications().getAllApllicationArray())
        all.push_back(validUtf8(path));
    session.print({{"filtered", applications}, {"all", all}});
    return ExitCode::Done;
}

ExitCode runModules(Session& session) {
    const CommandLine& line = session.commandLine();
    auto& defaults = session.application().defaults();
    for (const bool isOn : {true, false}) {
        const auto switched = switchModules(session, isOn ? line.modulesToEnable : line.modulesToDisable, isOn);
        if (!switched) {
            session.complain(switched.error().message());
            return ExitCode::Usage;
        }
    }
    ExitCode outcome = ExitCode::Done;
    if (!line.modulesToEnable.empty() || !line.modulesToDisable.empty()) {
        if (const auto saved = saveSettings(session); !saved) {
            session.complain(saved.error().message());
            outcome = ExitCode::Incomplete;
        }
    }
    if (line.wantsJson) {
        session.print(moduleSwitchesJson(session.application(), defaults));
        return outcome;
    }
    for (const auto& row : scanModules()) {
        std::cout << session.style().heading(row.name) << "\n";
        for (const auto& part : row.switches)
            std::cout << "  " << (defaults.boolForKey(part.defaultsName) ? "[x] " : "[ ] ") << part.name << "\n";
    }
    return outcome;
}

} // namespace sweeply
