#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"
#include "cli/TargetPaths.h"
#include "platform/TargetPath.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace sweeply {

namespace {

/// Unchecked items are kept by module; those named here are filed under this one.
constexpr const char* kIgnoredItemsModule = "Caches";

/// What could not be done, if anything.
Result<void> changeItems(Session& session, const std::vector<std::string>& paths) {
    auto& items = session.application().ignoreList().uncheckedItems();
    std::vector<std::string> keys;
    for (const auto& path : paths)
        keys.push_back(ignoreKeyForPath(path));
    if (session.commandLine().ignoreAction == "add")
        items.addKeys(keys, kIgnoredItemsModule);
    else if (items.removeKeys(keys, kIgnoredItemsModule) == 0)
        return Failure(Error{ErrorKind::NotFound, paths.front(), "not on the ignore list"});
    return {};
}

Result<void> changeApplications(Session& session, const std::vector<std::string>& paths) {
    auto& list = session.application().ignoreList();
    if (session.commandLine().ignoreAction == "add") {
        if (list.receiveDragData(paths).empty())
            return Failure(Error{ErrorKind::NotFound, paths.front(), "no application with an identifier"});
        return {};
    }
    for (const auto& path : paths) {
        bool isRemoved = false;
        for (const auto& identifier : list.applicationList().identifiersAt(path))
            isRemoved = list.applicationList().removeBundleFromList(identifier) || isRemoved;
        // An application that is gone is taken off by its identifier.
        isRemoved = isRemoved || list.applicationList().removeBundleFromList(std::string(lastPathComponent(path)));
        if (!isRemoved)
            return Failure(Error{ErrorKind::NotFound, path, "not on the ignore list"});
    }
    return {};
}

void printLists(Session& session) {
    auto& list = session.application().ignoreList();
    auto& unchecked = list.uncheckedItems();
    const auto applications = list.applicationList().ignoreAppsArray();
    if (session.commandLine().wantsJson) {
        Json items = Json::object();
        for (const auto& key : unchecked.moduleKeys())
            items[key] = unchecked.ignoreListForController(key);
        session.print({{"target", targetJson(session.application())},
                       {"items", items},
                       {"applications", applications},
                       {"sharedListVersion", list.currentIgnorelistVersion()}});
    } else if (session.commandLine().ignoreAction == "list" && session.commandLine().ignoresApplications) {
        std::vector<std::vector<std::string>> rows;
        for (const auto& identifier : applications)
            rows.push_back({identifier});
        printColumns(std::cout, session.style(), rows);
    } else if (session.commandLine().ignoreAction == "list") {
        std::vector<std::vector<std::string>> rows;
        for (const auto& key : unchecked.moduleKeys()) {
            for (const auto& item : unchecked.ignoreListForController(key))
                rows.push_back({key, item});
        }
        printColumns(std::cout, session.style(), rows);
    }
}

/// The operands as paths of the target. To take an application off the list that is not there any more, its identifier
/// stands for it.
Result<std::vector<std::string>> itemsMeant(Session& session) {
    const CommandLine& line = session.commandLine();
    const auto isIdentifier = [&](const std::string& operand) {
        return line.ignoresApplications && line.ignoreAction == "remove" && operand.find('/') == std::string::npos;
    };
    std::vector<std::string> items;
    for (const auto& operand : line.operands) {
        if (isIdentifier(operand)) {
            items.push_back(operand);
            continue;
        }
        const auto paths = targetPaths(session.application().target(), {operand});
        if (!paths)
            return paths;
        items.push_back(paths->front());
    }
    return items;
}

/// Fetches a newer shared list and says how that went.
ExitCode updateSharedList(Session& session) {
    const auto report = session.updateSharedList();
    const bool isDone = report && report->outcome != UpdateOutcome::Error;
    if (session.commandLine().wantsJson)
        printLists(session);
    if (!report)
        return ExitCode::Interrupted;
    return isDone ? ExitCode::Done : ExitCode::Incomplete;
}

} // namespace

ExitCode runIgnore(Session& session) {
    const CommandLine& line = session.commandLine();
    if (line.ignoreAction == "update")
        return updateSharedList(session);
    ExitCode outcome = ExitCode::Done;
    if (line.ignoreAction != "list") {
        const auto paths = itemsMeant(session);
        if (!paths) {
            session.complain(paths.error().message());
            return ExitCode::Usage;
        }
        const auto changed =
            line.ignoresApplications ? changeApplications(session, *paths) : changeItems(session, *paths);
        const auto saved = session.application().defaults().synchronize();
        for (const auto* step : {&changed, &saved}) {
            if (!*step) {
                session.complain(step->error().message());
                outcome = ExitCode::Incomplete;
            }
        }
    }
    printLists(session);
    return outcome;
}

} // namespace sweeply
