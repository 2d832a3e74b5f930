#pragma once

#include "cli/Step.h"

#include <functional>

namespace sweeply {

class Session;

/// Shows what was found; once the person agrees, removes it and says how it went.
[[nodiscard]] Step removeAfterQuestion(Session& session, std::function<void()> remove);

/// What a removal makes of a scan that could not look everywhere: the work is done, but not all of it.
[[nodiscard]] ExitCode afterScan(Session& session, ExitCode outcome);

} // namespace sweeply
