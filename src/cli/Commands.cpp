#include "cli/Commands.h"

#include "cli/AllUsers.h"
#include "cli/CleanNotice.h"
#include "cli/Interrupt.h"
#include "cli/JsonOutput.h"
#include "cli/ManyRoots.h"
#include "cli/Session.h"
#include "cli/StandardOutput.h"
#include "formats/DisplayEscapes.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"

#include <cerrno>
#include <iostream>

namespace sweeply {

namespace {

/// An error says why the target cannot be worked on.
Result<ExitCode> runOnTarget(const CommandLine& line, SystemLog& log, const RunOutput& output) {
    if (line.isForAllUsers)
        return runForAllUsers(line, log, output);
    const auto session = Session::open(line, log, output);
    if (!session)
        return Failure(session.error());
    if (!*session)
        return ExitCode::Done; // a reference that only prints
    const auto step = runCommand(**session);
    const auto outcome = !step.rest ? step.outcome
                                    : step.rest(!step.isQuestion || line.saysYes ||
                                                TerminalAlerts::confirms(localizedString("Remove the checked items?")));
    if (line.notifies)
        tellHowCleanWent(**session, outcome, log);
    return outcome;
}

ExitCode run(const std::vector<std::string>& arguments) {
    const auto line = parseCommandLine(arguments, std::cout);
    if (!line) {
        complain(line.error().message());
        return ExitCode::Usage;
    }
    if (!*line)
        return ExitCode::Done;
    switch ((*line)->command) {
    case Command::Size:
        return runSize(**line);
    case Command::Sample:
        return runSample(**line);
    case Command::Schedule:
        if ((*line)->scheduleAction != "add")
            return runInstalledSchedules(**line);
        break;
    default:
        break;
    }
    if (asksFirst(**line) && !Terminal::ofThisProcess().isInteractive()) {
        complain("nobody here to ask; say --yes to remove without a question");
        return ExitCode::Usage;
    }
    SyslogLog log((*line)->isVerbose ? SyslogLog::Copy::StandardError : SyslogLog::Copy::None);
    interrupt::install();
    const auto onTarget = [&log](const CommandLine& each, const RunOutput& output) {
        return runOnTarget(each, log, output);
    };
    const auto outcome = (*line)->rootsFrom ? runOnRoots(**line, onTarget) : onTarget(**line, {printJson, complain});
    if (outcome)
        return *outcome;
    complain(outcome.error().message());
    if ((*line)->notifies)
        tellThatCleanFailed(outcome.error().message(), log);
    return ExitCode::Usage;
}

} // namespace

Step runCommand(Session& session) {
    switch (session.commandLine().command) {
    case Command::Scan:
        return runScan(session);
    case Command::Clean:
        return runClean(session);
    case Command::Apply:
        return runApply(session);
    case Command::Erase:
        return runErase(session);
    case Command::Uninstall:
        return runUninstall(session);
    case Command::Receipts:
        return runReceipts(session);
    case Command::Leftovers:
        return runLeftovers(session);
    case Command::Extensions:
        return runExtensions(session);
    case Command::Apps:
        return runApps(session);
    case Command::Modules:
        return runModules(session);
    case Command::Ignore:
        return runIgnore(session);
    case Command::Prefs:
        return runPrefs(session);
    case Command::History:
        return runHistory(session);
    case Command::Kept:
        return runKept(session);
    case Command::Undo:
        return runUndo(session);
    case Command::Purge:
        return runPurge(session);
    case Command::Schedule:
        return runSchedule(session);
    case Command::ShowFolders:
    case Command::Size:
    case Command::Sample:
        break;
    }
    return ExitCode::Done;
}

void complain(std::string_view text) { std::cerr << "sweeply-cli: " + escapedForDisplay(text) + "\n"; }

int runCommandLine(const std::vector<std::string>& arguments) {
    const StandardOutput output;
    ExitCode outcome = run(arguments);
    std::cout.flush();
    const bool isReaderGone = output.failure() == EPIPE; // who has seen enough, as head has, needs not be told
    if (output.failure() != 0 && !isReaderGone)
        complain(systemError(output.failure(), "standard output").message());
    if (output.failure() != 0 && (outcome == ExitCode::Done || outcome == ExitCode::Interrupted))
        outcome = isReaderGone ? ExitCode::ReaderGone : ExitCode::Incomplete;
    return static_cast<int>(outcome);
}

} // namespace sweeply
