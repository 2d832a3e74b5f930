#include "app/ModuleSelection.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/JsonOutput.h"
#include "cli/Looking.h"
#include "cli/PlanWriting.h"
#include "cli/Removing.h"
#include "cli/Session.h"
#include "cli/TargetPaths.h"
#include "cli/TextOutput.h"
#include "formats/DisplayEscapes.h"
#include "platform/Localization.h"

#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace sweeply {

namespace {

/// Looks at what the command line of a scan names, which is the answer; nothing, with a complaint, when it is wrong.
std::optional<Scope> find(Session& session) {
    auto scope = scopeOf(session);
    const auto found = scope ? look(session, *scope) : Failure(scope.error());
    if (found)
        return *std::move(scope);
    session.complain(found.error().message());
    return std::nullopt;
}

/// Shows what was found, and writes it into a plan where one is wanted. `arguments` have it found again.
ExitCode showFound(Session& session, const std::vector<std::string>& arguments) {
    const CommandLine& line = session.commandLine();
    const bool wasStopped = interrupt::wasRequested();
    auto outcome = ExitCode::Done;
    if (line.planFile && !wasStopped)
        outcome = writePlan(session, arguments);
    else if (line.planFile)
        session.complain("interrupted; no plan was written");
    if (line.wantsJson)
        session.print(scanJson(session.application()));
    else if (line.planFile != "-")
        printScan(session.application(), session.style(), std::cout);
    if (line.planFile && line.planFile != "-" && !line.wantsJson && !wasStopped && outcome == ExitCode::Done)
        std::cout << localizedFormat("The plan is in %@; \"apply\" carries it out.",
                                     {escapedForDisplay(*line.planFile)})
                  << "\n";
    return interrupt::wasRequested() ? ExitCode::Interrupted : outcome;
}

/// The named items as paths of the target, without those that are not there. Says which those are.
struct NamedItems {
    std::vector<std::string> paths;
    bool areAllThere = true;
};
Result<NamedItems> namedItems(const Session& session, const Application& application) {
    auto paths = targetPaths(application.target(), session.commandLine().operands);
    if (!paths)
        return Failure(paths.error());
    NamedItems items;
    for (auto& path : *paths) {
        const auto attributes = application.target().files->attributesOfItemAtPath(path, Links::DontFollow);
        if (attributes) {
            items.paths.push_back(std::move(path));
        } else {
            session.complain(attributes.error().message());
            items.areAllThere = false;
        }
    }
    return items;
}

/// Has `look` look at the named items, shows what it makes of them, and has `remove` take what its modules found unless
/// that is only to be shown.
template<typename Look, typename Remove>
Step removeNamedItems(Session& session, const Look& look, const Remove& remove) {
    const auto items = namedItems(session, session.application());
    if (!items) {
        session.complain(items.error().message());
        return ExitCode::Usage;
    }
    const auto modules = look(items->paths);
    Step step = ExitCode::Done;
    if (session.commandLine().isDryRun)
        step = showFound(session, items->paths);
    else
        step = removeAfterQuestion(session, [modules, remove] { remove(modules); });
    return std::move(step).finishedBy([areAllThere = items->areAllThere](ExitCode outcome) {
        return outcome == ExitCode::Done && !areAllThere ? ExitCode::Incomplete : outcome;
    });
}

} // namespace

ExitCode runScan(Session& session) {
    const auto scope = canWritePlan(session) ? find(session) : std::nullopt;
    if (!scope)
        return ExitCode::Usage;
    auto arguments = scope->paths.empty() ? selectedModules(session.application().scanController()) : *scope->modules;
    arguments.insert(arguments.end(), scope->paths.begin(), scope->paths.end());
    return showFound(session, arguments);
}

Step runClean(Session& session) {
    if (!find(session))
        return ExitCode::Usage;
    return removeAfterQuestion(session, [&session] { session.removeChecked(); })
        .finishedBy([&session](ExitCode outcome) { return afterScan(session, outcome); });
}

Step runErase(Session& session) {
    const CommandLine& line = session.commandLine();
    auto& controller = session.application().scanController();
    controller.setUseSecureErase(line.isSecure || controller.useSecureErase());
    if (controller.useSecureErase() && !line.wantsJson)
        std::cerr << localizedString(
                         "Files are overwritten where they lie. Disks with flash memory, snapshots and file "
                         "systems that copy on writing may keep the old contents elsewhere.")
                  << "\n";
    return removeNamedItems(
        session,
        [&](const std::vector<std::string>& paths) {
            selectModules(controller, {});
            std::vector<ADScanController*> eraser{&moduleNamed(session, "eraser")};
            session.analyze(eraser, paths);
            return eraser;
        },
        [&session](const auto&) {
            session.application().runs().setCommand("erase");
            session.removeChecked();
        });
}

Step runUninstall(Session& session) {
    const CommandLine& line = session.commandLine();
    if (!canWritePlan(session))
        return ExitCode::Usage;
    if (line.checksWeakMatches)
        session.application().ownership().checkWeakMatches();
    auto step = removeNamedItems(
        session, [&](const auto& paths) { return lookToUninstall(session, paths); },
        [&session](const auto& modules) { session.uninstallChecked(modules); });
    if (line.isDryRun)
        return step;
    return std::move(step).finishedBy([&session](ExitCode outcome) { return afterScan(session, outcome); });
}

} // namespace sweeply
