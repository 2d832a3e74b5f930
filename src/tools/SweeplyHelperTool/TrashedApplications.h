#pragma once

#include "platform/FileManager.h"

#include <chrono>
#include <string>
#include <vector>

namespace sweeply {
class SystemLog;
}

namespace helper {

/// The applications that came into the Trash since the last call, for which an uninstallation is to be offered.
///
/// One that is still being copied is waited for, up to `patience`, and comes next time if that is not enough. One of
/// which another copy is installed was put there by an update of it, and is passed over.
[[nodiscard]] std::vector<std::string> newlyTrashedApplications(sweeply::FileManager& files, const std::string& home,
                                                                std::chrono::milliseconds patience,
                                                                sweeply::SystemLog& log);

} // namespace helper
