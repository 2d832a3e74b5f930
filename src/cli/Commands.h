#pragma once

#include "cli/CommandLine.h"
#include "cli/ExitCode.h"

namespace sweeply {

class Session;

// One function for each command. Results go to standard output, problems to standard error, one line each.

ExitCode runScan(Session& session);
ExitCode runClean(Session& session);
ExitCode runErase(Session& session);
ExitCode runUninstall(Session& session);
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
/// These two need no target.
ExitCode runSize(const CommandLine& line);
ExitCode runSample(const CommandLine& line);

/// "sweeply-cli: TEXT" on standard error, escaped for display.
void complain(std::string_view text);

/// What main() does: reads the command line and runs the command.
int runCommandLine(const std::vector<std::string>& arguments);

} // namespace sweeply
