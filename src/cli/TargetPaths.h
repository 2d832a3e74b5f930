#pragma once

#include "platform/Error.h"

#include <string>
#include <vector>

namespace sweeply {

struct Target;

/// What a person typed, as paths of the target: absolute ones and those with "~" are meant so already, others count
/// from the working folder, which then has to be inside the target's root.
[[nodiscard]] Result<std::vector<std::string>> targetPaths(const Target& target,
                                                           const std::vector<std::string>& operands);

} // namespace sweeply
