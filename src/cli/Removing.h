#pragma once

#include "cli/ExitCode.h"

#include <functional>

namespace sweeply {

class Session;

/// Can a question be put, or is it answered already? Complains if not.
[[nodiscard]] bool canAskOrNeedNot(const Session& session);

/// Shows what was found, asks unless that is answered already, removes, and says how it went.
[[nodiscard]] ExitCode removeAfterQuestion(Session& session, const std::function<void()>& remove);

/// What a removal makes of a scan that could not look everywhere: the work is done, but not all of it.
[[nodiscard]] ExitCode afterScan(Session& session, ExitCode outcome);

} // namespace sweeply
