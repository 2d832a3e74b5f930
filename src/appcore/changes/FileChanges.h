#pragma once

#include "platform/Error.h"

#include <functional>
#include <string>
#include <vector>

namespace sweeply {

class FileManager;
struct LocatedItem;
class PrivilegedExecution;
class ToolTable;

/// How files and folders are removed, overwritten and emptied: as the user, and with administrator rights, when there
/// are any, what the user may not. All take target paths; what the file manager's guard protects is refused by each of
/// them. NotFound where nothing is. Thread-safe.
class FileChanges final {
  public:
    /// All outlive this.
    FileChanges(FileManager& files, PrivilegedExecution& privileged, const ToolTable& tools)
        : m_files(files), m_privileged(privileged), m_tools(tools) {}

    /// A file, a link or a whole folder.
    Result<void> remove(const std::string& path);
    /// The same, overwriting files first.
    Result<void> overwrite(const std::string& path);
    /// Leaves the file with a single new-line character, in place; nothing but a regular file is emptied.
    Result<void> empty(const std::string& path);
    /// Is it a file as that leaves it, or with nothing in it?
    [[nodiscard]] bool isEmptied(const std::string& path) const;

  private:
    /// An item is gone: its companion goes the same way.
    Result<void> removeCompanion(const std::string& path, const LocatedItem& item,
                                 const std::function<bool(const std::string& name)>& remove) const;
    /// Runs a shell command with a folder as the working directory. The error is what the command said.
    [[nodiscard]] Result<void> shell(const std::string& command, int workingDirectory,
                                     const std::vector<int>& inheritedDescriptors) const;

    FileManager& m_files;
    PrivilegedExecution& m_privileged;
    const ToolTable& m_tools;
};

} // namespace sweeply
