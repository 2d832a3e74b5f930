#pragma once

#include "cli/CommandLine.h"
#include "cli/ExitCode.h"
#include "cli/RunOutput.h"
#include "platform/Error.h"

namespace sweeply {

class SystemLog;

/// Can the command be run for all users at once?
[[nodiscard]] bool goesForAllUsers(Command command);

/// Runs the command for each user of the target in turn, in the order of their names, then for what they share, and
/// gives `output` one object for all. The part that everybody shares is a run of the first user who can be looked at:
/// its record, and what it keeps, are his. A user who cannot be looked at stops nobody else. What is removed is removed
/// once everything was shown, after one question. The worst outcome; an error where there is nobody to begin with.
[[nodiscard]] Result<ExitCode> runForAllUsers(const CommandLine& line, SystemLog& log, const RunOutput& output);

} // namespace sweeply
