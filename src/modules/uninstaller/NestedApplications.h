#pragma once

#include "platform/ItemIdentity.h"

#include <string>
#include <vector>

namespace sweeply {

class DiskSizes;

/// What one walk through a bundle tells.
struct BundleContents {
    MeasuredItem measured;
    /// The applications in it, at any depth, but not in frameworks and localizations.
    std::vector<std::string> applications;
};
[[nodiscard]] BundleContents contentsOfBundle(const DiskSizes& sizes, const std::string& bundle);

} // namespace sweeply
