#pragma once

#include "platform/TemporaryFiles.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace sweeply {

class FileManager;

/// Says on the disk, in our own folder, which copy of an executable may lie in an application as long as this lives:
/// after a kill the copy is found by it and taken away.
class SlimmingRecord final {
  public:
    /// `copy` is the path that the copy will have, with a temporary name in its last component. Where nothing can be
    /// written into `stateFolder` there is no record.
    SlimmingRecord(FileManager& files, const std::string& stateFolder, std::string_view copy);

    /// Sweeps the state folder, and before a record of a killed process goes has `remove` take away the copy that it
    /// names. Where that says false, the record stays until the next time.
    static void sweep(FileManager& files, const std::string& stateFolder,
                      const std::function<bool(const std::string& copy)>& remove);

  private:
    std::optional<TemporaryFile> m_record;
};

} // namespace sweeply
