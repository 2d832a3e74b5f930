#pragma once

#include "cli/ExitCode.h"
#include "engine/plan/Plan.h"

#include <string>
#include <vector>

namespace sweeply {

class ADScanController;
class Session;

/// Every module that lists items of its own.
[[nodiscard]] std::vector<ADScanController*> modulesOf(Session& session);

/// The session's target, as a plan names it.
[[nodiscard]] PlanTarget planTargetOf(Session& session);

/// False, with a complaint, when a plan is wanted and could not be written: to find out before the work.
[[nodiscard]] bool canWritePlan(const Session& session);

/// Writes what the command found into the plan that is wanted. `arguments` have the command find the same again.
[[nodiscard]] ExitCode writePlan(Session& session, const std::vector<std::string>& arguments);

} // namespace sweeply
