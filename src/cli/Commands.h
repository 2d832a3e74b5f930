#pragma once

#include "cli/CommandLine.h"
#include "cli/Step.h"

namespace sweeply {

class Session;

/// Runs the command that the session's command line names.
Step runCommand(Session& session);

// One function for each command. Texts go to standard output; the JSON object and what went wrong, one line each, to
// the session.

ExitCode runScan(Session& session);
Step runClean(Session& session);
Step runApply(Session& session);
Step runErase(Session& session);
Step runUninstall(Session& session);
ExitCode runReceipts(Session& session);
ExitCode runLeftovers(Session& session);
ExitCode runExtensions(Session& session);
ExitCode runApps(Session& session);
ExitCode runModules(Session& session);
ExitCode runIgnore(Session& session);
ExitCode runPrefs(Session& session);
ExitCode runHistory(Session& session);
ExitCode runKept(Session& session);
ExitCode runUndo(Session& session);
ExitCode runPurge(Session& session);
ExitCode runSchedule(Session& session);
/// These need no target.
ExitCode runInstalledSchedules(const CommandLine& line);
ExitCode runSize(const CommandLine& line);
ExitCode runSample(const CommandLine& line);

/// "sweeply-cli: TEXT" on standard error, escaped for display. Any thread.
void complain(std::string_view text);

/// What main() does: reads the command line and runs the command.
int runCommandLine(const std::vector<std::string>& arguments);

} // namespace sweeply
