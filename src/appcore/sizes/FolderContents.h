#pragma once

#include "appcore/sizes/SizeDisplay.h"
#include "platform/Error.h"
#include "platform/FileAttributes.h"

#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>

namespace sweeply {

class FileManager;
class ReadProblems;

/// An entry of a folder with all that is in it.
struct FolderPart {
    std::string name;
    FileType type = FileType::Other;
    std::uint64_t size = 0;     ///< bytes, each file in whole blocks
    bool isWhole = true;        ///< false where a part of it could not be read
    bool isOtherVolume = false; ///< something is mounted there, which was not looked at
};

/// Measures what is in the target's folder at `path`, entry by entry, and tells each to `found` on this thread. Stays
/// on the folder's volume and follows no link below it. What cannot be read is among `problems`, and not among the
/// target's: this is no scan. An error when the folder itself cannot be read. A stop ends it at once.
Result<void> measureContents(const FileManager& files, std::string_view path, SizeUnits units,
                             const std::stop_token& stop, const std::function<void(FolderPart)>& found,
                             ReadProblems& problems);

} // namespace sweeply
