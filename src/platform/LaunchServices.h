#pragma once

#include "platform/FileManager.h"

#include <string>
#include <utility>
#include <vector>

namespace sweeply {

/// The system's registry of applications.
class LaunchServices {
  public:
    virtual ~LaunchServices() = default;

    /// The target paths of all registered applications, in the registry's order, double ones included. Thread-safe.
    [[nodiscard]] virtual Result<std::vector<std::string>> copyAllApplicationURLs() const = 0;
};

/// A list that was made already, by whom all others can be asked.
class KnownApplications final : public LaunchServices {
  public:
    explicit KnownApplications(std::vector<std::string> paths) : m_paths(std::move(paths)) {}

    [[nodiscard]] Result<std::vector<std::string>> copyAllApplicationURLs() const override { return m_paths; }

  private:
    const std::vector<std::string> m_paths;
};

/// The registry as our lsregister writes it: a property list that holds an array of paths.
class RegisteredApplicationsFile final : public LaunchServices {
  public:
    /// `path` is the file's target path; it need not exist. `files` outlives this.
    RegisteredApplicationsFile(const FileManager& files, std::string path);

    /// NotFound before the registry was ever built; Damaged when the file is no array. Passed over are entries that are
    /// no absolute paths and applications that are gone.
    [[nodiscard]] Result<std::vector<std::string>> copyAllApplicationURLs() const override;

  private:
    const FileManager& m_files;
    std::string m_path;
};

} // namespace sweeply
