#include "app/Target.h"

#include "appcore/CommandLineController.h"
#include "appcore/ProcessorFamily.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <cstdlib>
#include <pwd.h>
#include <set>
#include <unistd.h>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kPreferencesName = "com.brindle.Sweeply.plist";
/// What a machine without a Mac OS X system is taken for when only single folders of it are to be cleaned.
constexpr const char* kAssumedVersion = "10.6";

Failure complaint(std::string reason) { return Failure(Error{ErrorKind::Other, {}, std::move(reason)}); }

bool isUserReference(const std::string& text) { return text == "-u" || text == "--user"; }

bool isFolderReference(const std::string& text) {
    return CommandLineController::takesValue(text) && !isUserReference(text);
}

FolderConstants caller() {
    const passwd* entry = ::getpwuid(::getuid());
    FolderConstants folders(entry ? entry->pw_name : "root");
    if (entry)
        folders.home = normalisedPath(entry->pw_dir);
    return folders;
}

constexpr const char* kNoUsers = ": no user's home with a Library in /Users";

/// The only user of a foreign volume; several, or none, must be told apart by the person.
Result<FolderConstants> onlyUserOf(const FileManager& files) {
    std::vector<std::string> users;
    if (const auto entries = files.contentsOfDirectoryAtPath("/Users")) {
        for (const auto& entry : *entries) {
            if (files.directoryExistsAtPath("/Users/" + entry.name + "/Library"))
                users.push_back(entry.name);
        }
    }
    if (users.size() == 1)
        return FolderConstants(users.front());
    if (users.empty())
        return complaint(files.rootPath() + kNoUsers + "; say whose files are meant with -u");
    std::ranges::sort(users);
    std::string list;
    for (const auto& user : users)
        list += (list.empty() ? "" : ", ") + user;
    return complaint(files.rootPath() + ": several users (" + list + "); say whose files are meant with -u");
}

/// In the user's Library, as on a Mac. A machine that is none has its own place for settings.
std::string preferencesFileFor(const FileManager& files, const FolderConstants& folders) {
    if (!files.isHostRoot() || files.directoryExistsAtPath(folders.expandTilde("~/Library/Preferences")))
        return folders.expandTilde("~/Library/Preferences/") + kPreferencesName;
    const char* configured = std::getenv("XDG_CONFIG_HOME");
    const std::string base = configured && *configured == '/' ? configured : folders.expandTilde("~/.config");
    return joinedPath(base, std::string("sweeply/") + kPreferencesName);
}

} // namespace

bool namesUser(const TargetOptions& options) { return std::ranges::any_of(options.references, isUserReference); }

TargetOptions forUser(TargetOptions options, const std::string& user) {
    auto& references = options.references;
    for (auto named = std::ranges::find_if(references, isUserReference); named != references.end();
         named = std::ranges::find_if(references, isUserReference))
        references.erase(named, named + std::min<std::ptrdiff_t>(2, references.end() - named));
    references.insert(references.begin(), {"-u", user}); // others may speak of the home
    return options;
}

Result<SystemVersion> versionOf(const FileManager& files, const TargetOptions& options) {
    if (options.osVersion) {
        if (const auto version = SystemVersion::fromProductVersion(*options.osVersion))
            return *version;
        return complaint("--os: '" + *options.osVersion + "' is no version of Mac OS X");
    }
    auto version = SystemVersion::read(files);
    if (version || version.error().kind != ErrorKind::NotFound)
        return version;
    if (!files.isHostRoot())
        return complaint(files.rootPath() + ": no Mac OS X system (" + version.error().message() +
                         "); say which it was with --os");
    if (std::ranges::any_of(options.references, isFolderReference))
        return *SystemVersion::fromProductVersion(kAssumedVersion);
    return complaint("no Mac OS X system on this machine; name the folder that holds one with --root");
}

Result<std::vector<TargetUser>> usersOf(const FileManager& files) {
    auto entries = files.contentsOfDirectoryAtPath("/Users");
    if (!entries)
        return entries.error().kind == ErrorKind::NotFound ? complaint(files.rootPath() + kNoUsers)
                                                           : Failure(entries.error());
    // A home that another one's name is a link to goes by its own name.
    std::ranges::sort(*entries, {}, [](const DirectoryEntry& entry) {
        return std::pair(entry.type == FileType::SymbolicLink, std::string_view(entry.name));
    });
    std::vector<TargetUser> users;
    std::set<std::pair<std::uint64_t, std::uint64_t>> homes; // by device and number
    for (const auto& [name, type] : *entries) {
        const std::string home = "/Users/" + name;
        const auto attributes = files.attributesOfItemAtPath(home, Links::Follow);
        if (attributes && (attributes->type != FileType::Directory || files.isMissingAtPath(home + "/Library")))
            continue;
        if (attributes ? !homes.emplace(attributes->device, attributes->inode).second : files.isMissingAtPath(home))
            continue;
        const auto library = files.openDirectory(home + "/Library");
        users.push_back(
            {name, library ? std::nullopt : std::optional(library.error()), attributes ? attributes->owner : 0});
    }
    if (users.empty())
        return complaint(files.rootPath() + kNoUsers);
    std::ranges::sort(users, {}, &TargetUser::name);
    return users;
}

Result<std::optional<Target>> openTarget(const TargetOptions& options, SystemLog& log, std::ostream& output) {
    auto files = FileManager::open(options.root.value_or("/"));
    if (!files)
        return Failure(files.error());

    const auto& references = options.references;
    FolderConstants folders = caller();
    if (!(*files)->isHostRoot() && !namesUser(options)) {
        auto user = onlyUserOf(**files);
        if (!user)
            return Failure(user.error());
        folders = std::move(*user);
    }
    CommandLineController controller(folders, **files, log, output);
    std::vector<std::string> arguments{"sweeply"};
    arguments.insert(arguments.end(), references.begin(), references.end());
    const auto outcome = controller.parseArguments(arguments);
    if (!outcome)
        return Failure(outcome.error());
    if (*outcome == CommandLineController::Outcome::Finished)
        return std::nullopt;

    auto version = versionOf(**files, options);
    if (!version)
        return Failure(version.error());
    auto family = options.processorFamily.value_or(processorFamily(**files, *version));
    auto preferencesFile = preferencesFileFor(**files, folders);
    return Target{std::move(*files), std::move(folders), *std::move(version), std::move(family),
                  std::move(preferencesFile)};
}

} // namespace sweeply
