#pragma once

#include "cli/CommandLine.h"
#include "cli/ExitCode.h"
#include "cli/RunOutput.h"
#include "platform/Error.h"

#include <functional>

namespace sweeply {

/// Runs a command on the one target that the command line names. An error says why the target cannot be worked on.
using RunOnTarget = std::function<Result<ExitCode>(const CommandLine& line, const RunOutput& output)>;

/// Runs the command on each root of the list that the command line names: one after the other, or several at a time,
/// each in a process of its own. With --json prints one object a line, as the targets are done, each with its root; of
/// one that failed, why. A target that fails stops no other one; an interrupt stops those under way and begins no more.
/// The worst outcome; an error where there is no such list.
[[nodiscard]] Result<ExitCode> runOnRoots(const CommandLine& line, const RunOnTarget& runOnTarget);

} // namespace sweeply
