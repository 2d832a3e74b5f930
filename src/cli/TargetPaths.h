#pragma once

#include "platform/Error.h"

#include <string>
#include <vector>

namespace sweeply {

class FileManager;
struct Target;

/// A path that a person typed, as a path of the target (see platform/TypedPath.h). Says so on standard error where it
/// has two meanings.
[[nodiscard]] Result<std::string> targetPath(const FileManager& files, const std::string& typed);

/// The same for several, in which "~" is the target user's home. The error is the first one met.
[[nodiscard]] Result<std::vector<std::string>> targetPaths(const Target& target,
                                                           const std::vector<std::string>& operands);

} // namespace sweeply
