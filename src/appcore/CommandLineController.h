#pragma once

#include "appcore/FolderConstants.h"
#include "platform/Error.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class FileManager;
class SystemLog;

/// Reads the references on the command line, which redirect the well-known folders. Used once, before anything starts.
class CommandLineController final {
  public:
    enum class Outcome {
        GoOn,
        Finished, ///< what was asked for has been printed; there is nothing else to do
    };

    /// Writes what it is told into `folders`; help and lists go to `output`. All outlive this.
    CommandLineController(FolderConstants& folders, const FileManager& files, SystemLog& log, std::ostream& output);

    /// `arguments` begins with the program itself. Ends at the first wrong one; its error is for the person at the
    /// screen and leaves what was read before it in place. References are obeyed in order, but the folders are printed
    /// once all are read.
    [[nodiscard]] Result<Outcome> parseArguments(const std::vector<std::string>& arguments);

    [[nodiscard]] static bool isReference(std::string_view argument);
    /// Those that redirect a folder, each with a value.
    [[nodiscard]] static std::vector<std::string_view> folderReferences();
    /// Does the reference redirect a folder that each user has?
    [[nodiscard]] static bool isUsersFolder(std::string_view reference);
    /// Is the argument after the reference part of it?
    [[nodiscard]] static bool takesValue(std::string_view reference);

  private:
    Result<void> setUser(const std::string& name);
    Result<void> setFolder(std::string FolderConstants::*folder, const std::string& path);
    void printFolders() const;
    void printHelp() const;

    FolderConstants& m_folders;
    const FileManager& m_files;
    SystemLog& m_log;
    std::ostream& m_output;
};

} // namespace sweeply
