#pragma once

#include "cli/Session.h"
#include "cli/ShownModules.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace sweeply {

/// The objects that --json prints. Keys keep their order; texts are valid UTF-8.
using Json = nlohmann::ordered_json;

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
