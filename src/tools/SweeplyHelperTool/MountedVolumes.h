#pragma once

#include <string>
#include <vector>

namespace sweeply {
class FileManager;
class SystemLog;
} // namespace sweeply

namespace helper {

struct Volume {
    std::string key; ///< tells this mount from any other
    std::string mountPoint;
};

/// Those mounted below one of `folders`, oldest first, as the kernel's table `mountinfo` lists them.
[[nodiscard]] std::vector<Volume> mountedVolumes(const std::string& mountinfo, const std::vector<std::string>& folders);

/// Those of `volumes` that were not there at the last call; of the first call only the newest.
[[nodiscard]] std::vector<Volume> newlyMounted(sweeply::FileManager& files, const std::string& home,
                                               const std::vector<Volume>& volumes, sweeply::SystemLog& log);

/// What is to be removed from a volume.
struct Cleaners {
    bool trashes = false;
    bool macOSJunk = false;
    bool winJunk = false;
};

/// Removes that, stays on the volume, follows no link, and logs what it removed and what it could not; `home`, a folder
/// of `files`, has a record of it.
void cleanVolume(const std::string& mountPoint, const Cleaners& cleaners, sweeply::FileManager& files,
                 const std::string& home, sweeply::SystemLog& log);

} // namespace helper
