#pragma once

#include "platform/FileLock.h"
#include "platform/FileManager.h"

#include <optional>
#include <string>
#include <vector>

namespace helper {

/// What the helper has dealt with already, kept in a file between its runs. One helper has it at a time.
class KnownNames final {
  public:
    /// Waits for another helper that has it. `path` is a path of `files`, which outlives this.
    KnownNames(sweeply::FileManager& files, std::string path);

    /// Is this the first run? Then nothing is known.
    [[nodiscard]] bool isNew() const { return m_isNew; }
    [[nodiscard]] bool contains(const std::string& name) const;
    /// Keeps exactly these.
    sweeply::Result<void> store(const std::vector<std::string>& names);

  private:
    sweeply::FileManager& m_files;
    const std::string m_path;
    std::optional<sweeply::FileLock> m_lock; ///< nothing where none can be had
    bool m_isNew = true;
    std::vector<std::string> m_names;
};

} // namespace helper
