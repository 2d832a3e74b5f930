#pragma once

#include "appcore/receipts/Package.h"
#include "platform/Error.h"

#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// The package index as it is kept between runs: an archive with each package's name, applications, place and kind.
[[nodiscard]] std::string archiveOfPackages(const std::vector<Package>& packages);

/// Reads one. What is damaged is an error without a path; single records that make no sense are left out.
[[nodiscard]] Result<std::vector<Package>> packagesInArchive(std::string_view bytes);

} // namespace sweeply
