#pragma once

#include "cli/Session.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace sweeply {

/// The objects that --json prints. Keys keep their order; texts are valid UTF-8.
using Json = nlohmann::ordered_json;

[[nodiscard]] Json targetJson(const Application& application);
/// The modules that took part, with their trees.
[[nodiscard]] Json modulesJson(Application& application);
/// All modules' figures together.
[[nodiscard]] Json totalsJson(Application& application);
[[nodiscard]] Json scanJson(Application& application);
[[nodiscard]] Json cleanJson(Session& session, bool wasStopped);

/// One object and a line end on standard output.
void printJson(const Json& json);

} // namespace sweeply
