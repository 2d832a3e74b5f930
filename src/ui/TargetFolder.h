#pragma once

#include "platform/Error.h"

#include <stop_token>
#include <string>
#include <vector>

namespace sweeply {

class FileManager;

/// One entry of a folder of the target, for somebody who chooses.
struct TargetEntry {
    std::string name;
    bool isFolder = false; ///< links followed
    bool isBundle = false; ///< a folder that the Mac shows as one thing: an application, a package, an extension
};

/// What is in the folder at `path`: folders first, each kind by name. A stop ends it at once, with nothing. What cannot
/// be read is an error here, and no problem of a scan. Any thread.
[[nodiscard]] Result<std::vector<TargetEntry>> entriesOfTargetFolder(const FileManager& files, const std::string& path,
                                                                     const std::stop_token& stop);

} // namespace sweeply
