#include "app/ModuleCatalog.h"
#include "app/ModuleSelection.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"
#include "cli/TargetPaths.h"
#include "cli/TextOutput.h"
#include "platform/Localization.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

namespace sweeply {

namespace {

/// The modules that the person named; without names those that are switched on.
Result<void> chooseModules(Session& session) {
    const CommandLine& line = session.commandLine();
    if (!line.wantsAllModules && line.operands.empty())
        return {};
    const auto switches =
        line.wantsAllModules ? Result<std::vector<std::string>>(allSwitches()) : switchesNamed(line.operands);
    if (!switches)
        return Failure(switches.error());
    selectModules(session.application().scanController(), *switches);
    return {};
}

/// The named modules, each of which must take paths.
Result<std::vector<ADScanController*>> modulesForPaths(Session& session) {
    const auto& names = session.commandLine().operands;
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

/// A scan, or a look at what the person named. False, with a complaint, when the command line is wrong.
bool find(Session& session) {
    const CommandLine& line = session.commandLine();
    const auto chosen = chooseModules(session);
    if (!chosen) {
        complain(chosen.error().message());
        return false;
    }
    if (line.paths.empty()) {
        session.scan();
        return true;
    }
    const auto modules = modulesForPaths(session);
    const auto paths = targetPaths(session.application().target(), line.paths);
    for (const auto* error : {modules ? nullptr : &modules.error(), paths ? nullptr : &paths.error()}) {
        if (error) {
            complain(error->message());
            return false;
        }
    }
    session.analyze(*modules, *paths);
    return true;
}

/// One line for each item that stayed.
void printFailures(const ChangeGate& gate) {
    for (const auto& report : gate.reports()) {
        const auto& error = report.outcome.error;
        if (!report.outcome.isDone() && report.path.empty())
            complain(error.message());
        else if (!report.outcome.isDone())
            complain("could not remove " + report.path + ": " +
                     (error.path == report.path ? error.reason : error.message()));
    }
}

ExitCode finishClean(Session& session) {
    auto& application = session.application();
    const bool wasStopped = interrupt::wasRequested();
    if (session.commandLine().wantsJson) {
        printJson(cleanJson(session, wasStopped));
    } else {
        const auto sums = application.gate().sums();
        if (sums.kept > 0)
            std::cout << localizedFormat("%i items are kept; \"undo\" puts them back.", {sums.kept}) << "\n";
        if (sums.removed > 0)
            std::cout << localizedFormat("Sweeply has cleaned %@ from your Mac!",
                                         {stringSizeFromLong(application.statistics().currentRemovedAmountOfSpace(),
                                                             application.units())})
                      << "\n";
    }
    printFailures(application.gate());
    if (wasStopped)
        return ExitCode::Interrupted;
    return application.gate().couldntRemoveSomething() ? ExitCode::Incomplete : ExitCode::Done;
}

/// Says which checked items could not be kept in a run that keeps what cannot be made again. True if there are any.
bool saysWhatCannotBeKept(Session& session, const ADScanController& module, const Node& node) {
    bool isAny = false;
    for (const auto* children : {&node.children(), &node.invisibleChildren()}) {
        for (const auto& child : *children) {
            if (child->hasChildren() || child->hasInvisibleChildren()) {
                isAny = saysWhatCannotBeKept(session, module, *child) || isAny;
            } else if (child->ifEnabled()) {
                auto& application = session.application();
                const auto request = application.uninstallSteps().requestFor(*child, module);
                if (const auto reason = application.gate().reasonAgainstKeeping(request); !reason.empty()) {
                    complain(request.path + ": cannot be kept: " + reason);
                    isAny = true;
                }
            }
        }
    }
    return isAny;
}

/// Settles whether the run keeps what cannot be made again; who says yes to our question was told what cannot be kept.
void chooseKeeping(Session& session) {
    const CommandLine& line = session.commandLine();
    auto& runs = session.application().runs();
    if (line.keepsRemoved)
        runs.setKeeping(*line.keepsRemoved ? Keeping::On : Keeping::Off);
    if (runs.keeping() == Keeping::Off)
        return;
    bool isAny = false;
    for (const auto& shown : shownModules(session.application())) {
        if (shown.module.removesWhatCannotBeMadeAgain())
            isAny = saysWhatCannotBeKept(session, shown.module, *shown.module.rootNode()) || isAny;
    }
    if (isAny && !line.saysYes)
        runs.setKeeping(Keeping::OnWherePossible);
}

/// Shows what was found, asks unless that is answered already, removes, and says how it went.
ExitCode removeAfterQuestion(Session& session, const std::function<void()>& remove) {
    const CommandLine& line = session.commandLine();
    if (!line.wantsJson)
        printScan(session.application(), session.style(), std::cout);
    std::cout.flush(); // what cannot be shown is not removed
    if (interrupt::wasRequested())
        return finishClean(session);
    chooseKeeping(session);
    if (!line.saysYes && totalsOf(shownModules(session.application())).filesFoundInEnabled > 0 &&
        !TerminalAlerts::confirms(localizedString("Remove the checked items?"))) {
        if (line.wantsJson)
            printJson(cleanJson(session, interrupt::wasRequested()));
        return interrupt::wasRequested() ? ExitCode::Interrupted : ExitCode::Incomplete;
    }
    remove();
    return finishClean(session);
}

/// What a removal makes of a scan that could not look everywhere: the work is done, but not all of it.
ExitCode afterScan(Session& session, ExitCode outcome) {
    if (outcome == ExitCode::Usage || session.application().target().files->problems().isEmpty())
        return outcome;
    complain(localizedString("the scan was incomplete: some folders or files could not be read"));
    return outcome == ExitCode::Done ? ExitCode::Incomplete : outcome;
}

bool canAskOrNeedNot(const Session& session) {
    if (session.commandLine().saysYes || session.terminal().isInteractive())
        return true;
    complain("nobody here to ask; say --yes to remove without a question");
    return false;
}

ADScanController& moduleNamed(Session& session, std::string_view name) {
    const auto row = std::ranges::find(moduleCatalog(), name, &ModuleRow::name);
    return *session.application().scanController().moduleForViewCode(row->viewCode);
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
            complain(attributes.error().message());
            items.areAllThere = false;
        }
    }
    return items;
}

/// Has each module take some of the named items, shows what they make of them, and removes that with `remove` unless
/// it is only to be shown.
using ItemsByModule = std::map<ADScanController*, std::vector<std::string>>;
ExitCode removeNamedItems(Session& session, const std::function<ItemsByModule(const std::vector<std::string>&)>& assign,
                          const std::function<void(const ItemsByModule&)>& remove) {
    const CommandLine& line = session.commandLine();
    auto& application = session.application();
    const auto items = namedItems(session, application);
    if (!items) {
        complain(items.error().message());
        return ExitCode::Usage;
    }
    selectModules(application.scanController(), {});
    const auto byModule = assign(items->paths);
    for (const auto& [module, paths] : byModule)
        session.analyze({module}, paths);
    const auto complete = [&](ExitCode outcome) {
        return outcome == ExitCode::Done && !items->areAllThere ? ExitCode::Incomplete : outcome;
    };
    if (!line.isDryRun)
        return complete(removeAfterQuestion(session, [&] { remove(byModule); }));
    if (line.wantsJson)
        printJson(scanJson(application));
    else
        printScan(application, session.style(), std::cout);
    return complete(ExitCode::Done);
}

} // namespace

ExitCode runScan(Session& session) {
    if (!find(session))
        return ExitCode::Usage;
    if (session.commandLine().wantsJson)
        printJson(scanJson(session.application()));
    else
        printScan(session.application(), session.style(), std::cout);
    return interrupt::wasRequested() ? ExitCode::Interrupted : ExitCode::Done;
}

ExitCode runClean(Session& session) {
    if (!canAskOrNeedNot(session) || !find(session))
        return ExitCode::Usage;
    return afterScan(session, removeAfterQuestion(session, [&] { session.removeChecked(); }));
}

ExitCode runErase(Session& session) {
    const CommandLine& line = session.commandLine();
    if (!line.isDryRun && !canAskOrNeedNot(session))
        return ExitCode::Usage;
    auto& controller = session.application().scanController();
    controller.setUseSecureErase(line.isSecure || controller.useSecureErase());
    if (controller.useSecureErase() && !line.wantsJson)
        std::cerr << localizedString(
                         "Files are overwritten where they lie. Disks with flash memory, snapshots and file "
                         "systems that copy on writing may keep the old contents elsewhere.")
                  << "\n";
    auto& eraser = moduleNamed(session, "eraser");
    return removeNamedItems(
        session,
        [&](const auto& paths) {
            return ItemsByModule{{&eraser, paths}};
        },
        [&](const auto&) {
            session.application().runs().setCommand("erase");
            session.removeChecked();
        });
}

ExitCode runUninstall(Session& session) {
    if (!session.commandLine().isDryRun && !canAskOrNeedNot(session))
        return ExitCode::Usage;
    session.application().startInventory(); // who else may claim what is found
    if (session.commandLine().checksWeakMatches)
        session.application().ownership().checkWeakMatches();
    auto& extensions = session.application().extensions();
    auto& applications = moduleNamed(session, "uninstaller");
    const auto assign = [&](const std::vector<std::string>& paths) {
        ItemsByModule byModule;
        for (const auto& path : paths) {
            auto* extension = extensions.uninstallControllerFor(path);
            byModule[extension ? static_cast<ADScanController*>(extension) : &applications].push_back(path);
        }
        return byModule;
    };
    const auto outcome = removeNamedItems(session, assign, [&](const ItemsByModule& items) {
        std::vector<ADScanController*> modules;
        for (const auto& [module, paths] : items)
            modules.push_back(module);
        session.uninstallChecked(modules);
    });
    return session.commandLine().isDryRun ? outcome : afterScan(session, outcome);
}

} // namespace sweeply
