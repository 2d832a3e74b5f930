#pragma once

#include "platform/Error.h"
#include "platform/FileManager.h"

#include <functional>
#include <string>
#include <vector>

namespace sweeply {

class PrivilegedExecution;
class RemovalPrimitives;
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
        FileManager& files, RemovalPrimitives& removals, PrivilegedExecution& privileged, const ToolTable& tools,
        std::string stateFolder, std::function<void(Step)> reached = [](Step) {});

    /// Keeps the slices of these names, byte for byte, and the file's attributes. True when that is done, also when
    /// nothing is at the path any more. A failure is kept with its reason, and the file is as it was.
    bool slimBinaryAtPath(const std::string& path, const std::vector<std::string>& keptSlices);

  private:
    /// An executable, the name of its copy in the same folder, and what the copying tool is told.
    struct Task {
        const std::string& path;
        const FileManager::Located& item;
        std::string copyName;
        std::vector<std::string> arguments;
    };

    bool slimBinaryWithPrivilidgesAtPath(const Task& task);
    [[nodiscard]] Result<void> copy(const Task& task) const;

    FileManager& m_files;
    RemovalPrimitives& m_removals;
    PrivilegedExecution& m_privileged;
    const ToolTable& m_tools;
    const std::string m_stateFolder;
    const std::function<void(Step)> m_reached;
};

} // namespace sweeply
