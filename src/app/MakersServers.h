#pragma once

#include "modules/ignorelist/IgnoreListController.h"
#include "platform/SystemVersion.h"

#include <string>
#include <vector>

namespace sweeply {

/// Where the maker's servers are: under names that no network resolves unless SWEEPLY_FEED_URL and SWEEPLY_REPORT_URL
/// say otherwise; and what they are told of this program and of a system of that version and these languages.
[[nodiscard]] MakersServers makersServers(const SystemVersion& version, const std::vector<std::string>& languages);

} // namespace sweeply
