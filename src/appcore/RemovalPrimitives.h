#pragma once

#include "platform/Error.h"

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

struct FolderConstants;
class FileManager;
class PrivilegedExecution;
class SystemLog;
class ToolTable;

/// An item that stayed, and what was in the way: the item itself, or something in it that the error names.
struct RemovalFailure {
    std::string path;
    Error error;
};

/// The only ways in which modules take anything off the disk. All take target paths; what the file manager's guard
/// protects is refused by each of them, with rights or without.
///
/// Thread-safe. Every failure is logged and kept with its reason until the next run.
class RemovalPrimitives final {
  public:
    /// All outlive this.
    RemovalPrimitives(FileManager& files, const FolderConstants& folders, PrivilegedExecution& privileged,
                      const ToolTable& tools, SystemLog& log);

    /// Removes a file, a link or a whole folder; with administrator rights, when there are, what the user may not. True
    /// when it is gone, also when nothing was there.
    bool tryToRemoveFileAtPath(const std::string& path);
    /// The same, overwriting files first.
    bool tryToSecurelyRemoveFileAtPath(const std::string& path);
    /// Removes everything in a folder, and goes on after a failure; true when all is gone. "~" is expanded.
    bool tryToRemoveAllFilesInDirectory(const std::string& path);
    /// Leaves the file with a single new-line character, in place. False for a folder or nothing; a link or a device is
    /// a failure like any other.
    bool tryToEmptyFileAtPath(const std::string& path);

    /// Did anything fail since startRun()?
    [[nodiscard]] bool couldntRemoveSomething() const { return m_couldntRemoveSomething; }
    void setCouldntRemoveSomething() { m_couldntRemoveSomething = true; }
    /// Keeps and logs the failure of a removal that is done elsewhere. Always false.
    bool failed(const std::string& path, Error error);
    /// What failed since startRun(), and why.
    [[nodiscard]] std::vector<RemovalFailure> failures() const;
    /// A run starts: forgets failures, and looks again which folders are protected. No removal may be under way.
    void startRun();
    /// The run is over: nothing of the volume is held any longer.
    void finishRun();

  private:
    /// Runs a shell command on the item, with its folder as the working directory. The error is what the command said.
    [[nodiscard]] Result<void> shell(const std::string& command, int workingDirectory,
                                     const std::vector<int>& inheritedDescriptors) const;

    FileManager& m_files;
    const FolderConstants& m_folders;
    PrivilegedExecution& m_privileged;
    const ToolTable& m_tools;
    SystemLog& m_log;

    std::atomic<bool> m_couldntRemoveSomething{false};
    mutable std::mutex m_mutex;
    std::vector<RemovalFailure> m_failures; ///< guarded by m_mutex
};

} // namespace sweeply
