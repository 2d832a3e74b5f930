#include "cli/Removing.h"

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

} // namespace

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

} // namespace sweeply
