#include "app/ModuleSelection.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"
#include "cli/TextOutput.h"
#include "platform/Localization.h"

#include <iostream>
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

/// One line for each item that stayed.
void printFailures(const RemovalPrimitives& removals) {
    for (const auto& [path, error] : removals.failures()) {
        std::string text = "could not remove " + path + ": ";
        text += error.path == path ? error.reason : error.message();
        complain(text);
    }
}

ExitCode finishClean(Session& session) {
    auto& application = session.application();
    const bool wasStopped = interrupt::wasRequested();
    if (session.commandLine().wantsJson) {
        printJson(cleanJson(session, wasStopped));
    } else if (session.removedCount() > 0) {
        std::cout << localizedFormat("Sweeply has cleaned %@ from your Mac!",
                                     {stringSizeFromLong(application.statistics().currentRemovedAmountOfSpace(),
                                                         application.units())})
                  << "\n";
    }
    printFailures(application.removals());
    if (wasStopped)
        return ExitCode::Interrupted;
    return application.removals().couldntRemoveSomething() ? ExitCode::Incomplete : ExitCode::Done;
}

} // namespace

ExitCode runScan(Session& session) {
    if (const auto chosen = chooseModules(session); !chosen) {
        complain(chosen.error().message());
        return ExitCode::Usage;
    }
    session.scan();
    if (session.commandLine().wantsJson)
        printJson(scanJson(session.application()));
    else
        printResults(session.application(), session.terminal(), std::cout);
    return interrupt::wasRequested() ? ExitCode::Interrupted : ExitCode::Done;
}

ExitCode runClean(Session& session) {
    const CommandLine& line = session.commandLine();
    if (!line.saysYes && !session.terminal().isInteractive()) {
        complain("nobody here to ask; say --yes to remove without a question");
        return ExitCode::Usage;
    }
    if (const auto chosen = chooseModules(session); !chosen) {
        complain(chosen.error().message());
        return ExitCode::Usage;
    }
    session.scan();
    auto& controller = session.application().scanController();
    if (!line.wantsJson)
        printResults(session.application(), session.terminal(), std::cout);
    if (interrupt::wasRequested())
        return finishClean(session);
    if (!line.saysYes && controller.filesFoundInEnabled() > 0 &&
        !TerminalAlerts::confirms(localizedString("Remove the checked items?"))) {
        if (line.wantsJson)
            printJson(cleanJson(session, interrupt::wasRequested()));
        return interrupt::wasRequested() ? ExitCode::Interrupted : ExitCode::Incomplete;
    }
    session.removeChecked();
    return finishClean(session);
}

} // namespace sweeply
