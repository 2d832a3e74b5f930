#pragma once

#include "cli/RunOutput.h"
#include "cli/Session.h"
#include "cli/ShownModules.h"

#include <string>

namespace sweeply {

/// "decimal" or "binary".
[[nodiscard]] const char* nameOfUnits(SizeUnits units);
[[nodiscard]] Json targetJson(const Application& application);
/// Why an item is listed.
[[nodiscard]] Json evidenceJson(const Evidence& evidence);
/// Modules with their figures and trees.
[[nodiscard]] Json modulesJson(Application& application, const std::vector<ShownModule>& modules);
[[nodiscard]] Json scanJson(Application& application);
[[nodiscard]] Json cleanJson(Session& session, bool wasStopped);

/// One item of a run.
[[nodiscard]] Json itemJson(const RecordedItem& item);

/// Adds the figures of one object to those of several: numbers are added up, one that is true makes all true, and a
/// size gets its text anew. What tells of a target, or is no figure, is passed over.
void addFigures(Json& sums, const Json& object, SizeUnits units);

/// One object and a line end on standard output.
void printJson(const Json& json);

} // namespace sweeply
