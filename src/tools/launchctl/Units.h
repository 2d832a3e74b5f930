#pragma once

#include "formats/PropertyList.h"

#include <string>
#include <tl/expected.hpp>
#include <vector>

namespace launchctl {

/// A launch agent's configuration as far as units of this system can say it.
struct Job {
    std::string label;
    std::vector<std::string> arguments; ///< the program first
    std::vector<std::string> watchedPaths;
    bool startsOnMount = false;
    bool runsAtLoad = false;
};

/// An error says what is missing or cannot be said.
[[nodiscard]] tl::expected<Job, std::string> jobIn(const sweeply::plist::Value& configuration);

/// The unit of a job, without ".service" or ".path": any label gives a name that is safe as a file's.
[[nodiscard]] std::string unitName(const std::string& label);
/// What the unit of that name is for; empty for one of somebody else's.
[[nodiscard]] std::string labelOf(const std::string& unitName);

[[nodiscard]] std::string serviceUnit(const Job& job);
/// `mountFolders` are the folders in which this system mounts volumes.
[[nodiscard]] std::string pathUnit(const Job& job, const std::vector<std::string>& mountFolders);

} // namespace launchctl
