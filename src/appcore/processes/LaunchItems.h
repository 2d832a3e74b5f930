#pragma once

#include "platform/Error.h"

#include <optional>
#include <string>
#include <vector>

namespace sweeply {

class ADTaskRunner;
class FileManager;
class SystemLog;
struct FolderConstants;

/// What a launch daemon or agent is, by its property list.
struct LaunchDefinition {
    std::optional<std::string> label;
    /// As it is written: often a path, but a bare name is looked for along `searchPath`.
    std::optional<std::string> program;
    std::string searchPath;
};

/// The property lists that tell the system what to start by itself. For worker threads.
class LaunchItems final {
  public:
    /// All outlive this.
    LaunchItems(const FileManager& files, const FolderConstants& folders, const ADTaskRunner& tasks, SystemLog& log)
        : m_files(files), m_folders(folders), m_tasks(tasks), m_log(log) {}

    /// Every property list in the folders for launch items of the user and of the machine.
    [[nodiscard]] std::vector<std::string> getAllLaunchFiles() const;
    [[nodiscard]] Result<LaunchDefinition> definitionAtPath(const std::string& path) const;
    /// Does it name a program that is surely not there?
    [[nodiscard]] bool isProgramMissing(const LaunchDefinition& definition) const;

    /// Has the system forget the item before its file goes; a failure is logged. Nothing of another machine's volume is
    /// loaded here, and there it is done at once.
    void removeLaunchDaemon(const std::string& path) const;
    /// The reverse, once the file is back.
    void loadLaunchDaemon(const std::string& path) const;

  private:
    const FileManager& m_files;
    const FolderConstants& m_folders;
    const ADTaskRunner& m_tasks;
    SystemLog& m_log;
};

} // namespace sweeply
