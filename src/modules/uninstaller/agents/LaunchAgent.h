#pragma once

#include "formats/PropertyList.h"
#include "platform/Error.h"

#include <optional>
#include <string>
#include <vector>

namespace sweeply {

class ADTaskRunner;
class FileManager;
struct FolderConstants;

/// One agent of ours that the user's launch service starts: its configuration file and whether it is loaded. Blocks
/// while the service's tool runs.
class LaunchAgent final {
  public:
    /// All outlive this.
    LaunchAgent(FileManager& files, const FolderConstants& folders, const ADTaskRunner& tasks, std::string label);

    [[nodiscard]] const std::string& label() const { return m_label; }
    /// Of the target.
    [[nodiscard]] std::string configurationPath() const;
    /// The arguments that the stored configuration starts its program with; nothing without one that can be read.
    [[nodiscard]] std::optional<std::vector<std::string>> programArguments() const;
    /// Does the launch service know it? Asks each time.
    [[nodiscard]] bool isLoaded() const;

    /// Writes the configuration and loads it. The error's reason is the one to show.
    Result<void> install(const plist::Dictionary& configuration);
    /// Unloads the agent and deletes its configuration; nothing to do without one.
    Result<void> uninstall();

  private:
    FileManager& m_files;
    const FolderConstants& m_folders;
    const ADTaskRunner& m_tasks;
    const std::string m_label;
};

} // namespace sweeply
