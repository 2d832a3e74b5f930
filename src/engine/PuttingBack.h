#pragma once

#include "engine/record/ChangeRuns.h"

#include <functional>
#include <string>
#include <vector>

namespace sweeply {

class AuthorisationSession;

/// Puts back what a run kept, as ChangeRuns::undo does; then once more what only an administrator may put back, if the
/// person gives those rights. For the one thread that changes something.
[[nodiscard]] Result<std::vector<UndoneItem>> putBack(
    ChangeRuns& runs, AuthorisationSession& authorisation, const std::string& run,
    const std::vector<std::string>& paths, const std::function<bool()>& isStopped = [] { return false; });

} // namespace sweeply
