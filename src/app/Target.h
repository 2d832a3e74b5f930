#pragma once

#include "appcore/FolderConstants.h"
#include "appcore/TargetPart.h"
#include "formats/PropertyList.h"
#include "platform/Error.h"
#include "platform/FileManager.h"
#include "platform/SystemVersion.h"

#include <cstdint>
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

/// What a run looks at of a target with several users, and by whose wishes.
struct TargetShare {
    TargetPart part = {};
    /// Preferences that hold for the run, whatever the user's file says.
    std::vector<plist::Dictionary::Member> preferences = {};
    /// The preferred languages, or why nobody knows them, and the applications: those of several users in place of this
    /// one's.
    std::optional<Result<std::vector<std::string>>> languages = {};
    std::optional<std::vector<std::string>> applications = {};
    /// Else what is known by its owner alone is another user's.
    bool hasOwnerOfItsOwn = true;
};

/// A user of a target, with a home in "/Users".
struct TargetUser {
    std::string name;
    /// Why nobody can look at the home.
    std::optional<Error> obstacle = {};
    std::uint32_t owner = 0; ///< of the home
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
    TargetShare share = {};
};

/// Those whose homes have a Library or may have one, by their names; a home with two names has one user.
[[nodiscard]] Result<std::vector<TargetUser>> usersOf(const FileManager& files);

/// Do the options say whose files are meant?
[[nodiscard]] bool namesUser(const TargetOptions& options);
/// The same for this user, whomever they named.
[[nodiscard]] TargetOptions forUser(TargetOptions options, const std::string& user);

/// Which system it is; an error says in one line that there is none, or what is wrong with the options.
[[nodiscard]] Result<SystemVersion> versionOf(const FileManager& files, const TargetOptions& options);

/// Opens the target and finds its user. Nothing for a reference that only prints, to `output`. An error says in one
/// line what is wrong with the command line or the target.
[[nodiscard]] Result<std::optional<Target>> openTarget(const TargetOptions& options, SystemLog& log,
                                                       std::ostream& output);

} // namespace sweeply
