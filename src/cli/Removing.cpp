#include "cli/Removing.h"

#include "cli/Interrupt.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"
#include "cli/TextOutput.h"
#include "platform/Localization.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

namespace sweeply {

namespace {

/// One line for each item that stayed.
void printFailures(Session& session) {
    for (const auto& report : session.application().gate().reports()) {
        const auto& error = report.outcome.error;
        if (!report.outcome.isDone() && report.path.empty())
            session.complain(error.message());
        else if (!report.outcome.isDone())
            session.complain("could not remove " + report.path + ": " +
                             (error.path == report.path ? error.reason : error.message()));
    }
}

ExitCode finishClean(Session& session) {
    auto& application = session.application();
    const bool wasStopped = interrupt::wasRequested();
    if (session.commandLine().wantsJson) {
        session.print(cleanJson(session, wasStopped));
    } else {
        printRemoved(application.gate().sums(), application.statistics().currentRemovedAmountOfSpace(),
                     application.units(), std::cout);
    }
    printFailures(session);
    if (wasStopped)
        return ExitCode::Interrupted;
    return application.gate().couldntRemoveSomething() ? ExitCode::Incomplete : ExitCode::Done;
}

/// Settles whether the run keeps what cannot be made again; who says yes to our question was told what cannot be kept.
void chooseKeeping(Session& session) {
    const CommandLine& line = session.commandLine();
    auto& runs = session.application().runs();
    if (line.keepsRemoved)
        runs.setKeeping(*line.keepsRemoved ? Keeping::On : Keeping::Off);
    if (runs.keeping() == Keeping::Off)
        return;
    std::vector<Error> obstacles;
    for (const auto& shown : shownModules(session.application())) {
        if (shown.module.removesWhatCannotBeMadeAgain())
            std::ranges::move(session.application().uninstallSteps().obstaclesToKeeping(shown.module),
                              std::back_inserter(obstacles));
    }
    for (const auto& obstacle : obstacles)
        session.complain(obstacle.path + ": cannot be kept: " + obstacle.reason);
    if (!line.saysYes)
        runs.setKeeping(keepingDespite(obstacles));
}

ExitCode saysNothingWasRemoved(Session& session) {
    if (session.commandLine().wantsJson)
        session.print(cleanJson(session, interrupt::wasRequested()));
    return interrupt::wasRequested() ? ExitCode::Interrupted : ExitCode::Incomplete;
}

} // namespace

Step removeAfterQuestion(Session& session, std::function<void()> remove) {
    if (!session.commandLine().wantsJson)
        printScan(session.application(), session.style(), std::cout);
    std::cout.flush(); // what cannot be shown is not removed
    if (interrupt::wasRequested())
        return finishClean(session);
    chooseKeeping(session);
    const auto rest = [&session, remove = std::move(remove)](bool isAgreed) {
        if (!isAgreed)
            return saysNothingWasRemoved(session);
        remove();
        return finishClean(session);
    };
    return {rest, totalsOf(shownModules(session.application())).filesFoundInEnabled > 0};
}

ExitCode afterScan(Session& session, ExitCode outcome) {
    if (outcome == ExitCode::Usage || session.application().target().files->problems().isEmpty())
        return outcome;
    session.complain(localizedString("the scan was incomplete: some folders or files could not be read"));
    return outcome == ExitCode::Done ? ExitCode::Incomplete : outcome;
}

} // namespace sweeply
