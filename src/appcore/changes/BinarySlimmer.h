#pragma once

#include "appcore/changes/FileChanges.h"
#include "platform/Error.h"
#include "platform/FileManager.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace sweeply {

class PrivilegedExecution;
class ToolTable;

/// Takes foreign processors' code out of executables. At every moment the old or the new executable is there, whole.
/// For the removal thread.
class BinarySlimmer final {
  public:
    /// What is behind a slimming: the new executable lies beside the old one, or stands in its place.
    enum class Step { Copied, Replaced };

    /// All outlive this. `stateFolder` is where it says what is under way, for a start after a kill. `reached` hears of
    /// each step.
    BinarySlimmer(
        FileManager& files, PrivilegedExecution& privileged, const ToolTable& tools, std::string stateFolder,
        std::function<void(Step)> reached = [](Step) {})
        : m_files(files), m_changes(files, privileged, tools), m_privileged(privileged), m_tools(tools),
          m_stateFolder(std::move(stateFolder)), m_reached(std::move(reached)) {}

    /// Keeps the slices of these names, byte for byte, and the file's attributes. After a failure the file is as it
    /// was.
    Result<void> slimBinaryAtPath(const std::string& path, const std::vector<std::string>& keptSlices);

    /// Is there surely nothing that slimming would take away?
    [[nodiscard]] bool isSlim(const std::string& path, const std::vector<std::string>& keptSlices) const;

    /// Takes away the copies that a kill left.
    void sweep();

  private:
    /// An executable, the name of its copy in the same folder, and what the copying tool is told.
    struct Task {
        const std::string& path;
        const FileManager::Located& item;
        std::string copyName;
        std::vector<std::string> arguments;
    };

    Result<void> slimBinaryWithPrivilidgesAtPath(const Task& task);
    [[nodiscard]] Result<void> copy(const Task& task) const;

    FileManager& m_files;
    FileChanges m_changes;
    PrivilegedExecution& m_privileged;
    const ToolTable& m_tools;
    const std::string m_stateFolder;
    const std::function<void(Step)> m_reached;
};

} // namespace sweeply
