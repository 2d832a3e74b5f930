#pragma once

#include "platform/Error.h"

#include <stop_token>
#include <string>
#include <string_view>

namespace sweeply {

class ToolTable;

/// Reads the one file that is wanted from an archive of a stranger, with the system's tools. Nothing of the archive is
/// ever written to the disk but the archive itself, in a temporary folder.
///
/// `archiveName` tells the kind: it ends with "tgz", ".tar.gz" or "zip". Refused as a whole: more than some megabytes
/// unpacked, more than some hundred members, and members that are absolute, lead upwards or are anything but files and
/// folders. The bytes of the first file called `wanted`; NotFound without one. A stop ends it at once.
[[nodiscard]] Result<std::string> fileFromArchive(const ToolTable& tools, std::string_view archiveBytes,
                                                  std::string_view archiveName, std::string_view wanted,
                                                  const std::stop_token& stop);

} // namespace sweeply
