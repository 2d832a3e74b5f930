#pragma once

#include "cli/RunOutput.h"
#include "cli/Session.h"
#include "cli/ShownModules.h"

#include <string>

namespace sweeply {

[[nodiscard]] Json targetJson(const Application& application);
/// Why an item is listed.
[[nodiscard]] Json evidenceJson(const Evidence& evidence);
/// Modules with their figures and trees.
[[nodiscard]] Json modulesJson(Application& application, const std::vector<ShownModule>& modules);
[[nodiscard]] Json scanJson(Application& application);
[[nodiscard]] Json cleanJson(Session& session, bool wasStopped);

/// One item of a run.
[[nodiscard]] Json itemJson(const RecordedItem& item);

/// One object and a line end on standard output.
void printJson(const Json& json);

} // namespace sweeply
