#pragma once

#include "appcore/FolderConstants.h"
#include "platform/Error.h"
#include "platform/FileManager.h"
#include "platform/SystemVersion.h"

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sweeply {

class SystemLog;

/// What the command line says of the system to clean, not yet looked at.
struct TargetOptions {
    /// The target's root on this machine; absent for this machine itself.
    std::optional<std::string> root;
    /// The folder references and their values, in order.
    std::vector<std::string> references;
    /// The generation, in place of what the target says of itself.
    std::optional<std::string> osVersion;
    /// The machine's processor family, in place of what can be told by looking.
    std::optional<std::string> processorFamily;
};

/// The system being cleaned: its files, one user of it, its generation. Stays as it is once opened.
struct Target {
    std::unique_ptr<FileManager> files;
    FolderConstants folders;
    SystemVersion version;
    /// "intel", "ppc", or "unknown".
    std::string processorFamily;
    /// Where the program keeps its preferences, as a target path.
    std::string preferencesFile;
};

/// Opens the target and finds its user. Nothing for a reference that only prints, to `output`. An error says in one
/// line what is wrong with the command line or the target.
[[nodiscard]] Result<std::optional<Target>> openTarget(const TargetOptions& options, SystemLog& log,
                                                       std::ostream& output);

} // namespace sweeply
