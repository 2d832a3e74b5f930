#include "appcore/FolderConstants.h"

namespace sweeply {

namespace {

/// Never removed, besides the folders that the constants name. Every folder above one of these is protected with it.
constexpr std::string_view kProtectedFolders[] = {
    "/Applications/Utilities",
    "/Library/Application Support",
    "/Library/Extensions",
    "/Library/Fonts",
    "/Library/Frameworks",
    "/Library/Keychains",
    "/Library/PrivilegedHelperTools",
    "/Library/Receipts/boms",
    "/Library/StartupItems",
    "/Network/Library",
    "/System/Library/CoreServices",
    "/System/Library/Extensions",
    "/System/Library/Fonts",
    "/System/Library/Frameworks",
    "/System/Library/LaunchAgents",
    "/System/Library/LaunchDaemons",
    "/System/Library/PreferencePanes",
    "/System/Library/Preferences",
    "/System/Library/PrivateFrameworks",
    "/Users/Shared",
    "/Volumes",
    "/bin",
    "/cores",
    "/dev",
    "/etc",
    "/home",
    "/mach_kernel",
    "/opt",
    "/private/etc",
    "/private/tmp",
    "/private/var/db/receipts",
    "/private/var/folders",
    "/private/var/root",
    "/private/var/tmp",
    "/private/var/vm",
    "/sbin",
    "/tmp",
    "/usr/bin",
    "/usr/lib",
    "/usr/libexec",
    "/usr/local/bin",
    "/usr/local/lib",
    "/usr/sbin",
    "/usr/share",
    "/var",
    "~/Applications",
    "~/Desktop",
    "~/Documents",
    "~/Downloads",
    "~/Library/Application Support",
    "~/Library/Cookies",
    "~/Library/Fonts",
    "~/Library/Keychains",
    "~/Library/LaunchAgents",
    "~/Library/Mail",
    "~/Library/Safari",
    "~/Movies",
    "~/Music",
    "~/Pictures",
    "~/Public",
    "~/Sites",
    "~/.Trash",
};

/// The folders among the constants, those of files and of single products left out: these may go with their product.
constexpr std::string FolderConstants::*kFolders[] = {
    &FolderConstants::APPLICATIONSPATH,
    &FolderConstants::HOMECACHESPATH,
    &FolderConstants::LIBRARYCACHESPATH,
    &FolderConstants::SYSTEMCACHESPATH,
    &FolderConstants::HOMELOGSPATH,
    &FolderConstants::LIBRARYLOGSPATH,
    &FolderConstants::SYSTEMLOGSPATH,
    &FolderConstants::USERPREFERENCESPATH,
    &FolderConstants::LIBRARYPREFERENCESPATH,
    &FolderConstants::USERPREFERENCEPANESPATH,
    &FolderConstants::SYSTEMPREFERENCEPANESPATH,
    &FolderConstants::USERWIDGETSPATH,
    &FolderConstants::SYSTEMWIDGETSPATH,
    &FolderConstants::LAUNCHAGENTSPATH,
    &FolderConstants::LAUNCHDAEMONSPATH,
    &FolderConstants::DICTIONARIESPATH,
    &FolderConstants::SCREENSAVERSPATH,
    &FolderConstants::QUICKTIMEPLUGINPATH,
    &FolderConstants::WEBBROWSERSPLUGINPATH,
    &FolderConstants::QUICKLOOKPLUGINPATH,
    &FolderConstants::FINDERPLUGINPATH,
    &FolderConstants::SPOTLIGHTPLUGINPATH,
    &FolderConstants::INPUTMANAGERSPLUGINPATH,
    &FolderConstants::ITUNESPLUGINPATH,
    &FolderConstants::ADDRESSBOOKPLUGINPATH,
    &FolderConstants::MAILPLUGINPATH,
    &FolderConstants::SERVICESPATH,
    &FolderConstants::SCRIPTINGADDITIONSPATH,
};

} // namespace

FolderConstants::FolderConstants(std::string name) : userName(std::move(name)), home("/Users/" + userName) {}

std::string FolderConstants::expandTilde(std::string_view path) const {
    if (path == "~" || path.starts_with("~/"))
        return home + std::string(path.substr(1));
    return std::string(path);
}

std::string FolderConstants::abbreviateWithTilde(std::string_view path) const {
    if (path == home || (path.starts_with(home) && path[home.size()] == '/'))
        return "~" + std::string(path.substr(home.size()));
    return std::string(path);
}

std::vector<std::string> FolderConstants::protectedFolders() const {
    std::vector<std::string> folders{home};
    for (const std::string_view folder : kProtectedFolders)
        folders.push_back(expandTilde(folder));
    // A redirected folder does not give up the one that the system itself uses.
    FolderConstants defaults(userName);
    defaults.home = home;
    for (const auto folder : kFolders) {
        const std::string& value = defaults.*folder;
        folders.push_back(expandTilde(value));
        // What the machine has in "/Library", a user has in the home's.
        if (value.starts_with("/Library/"))
            folders.push_back(home + value);
        folders.push_back(expandTilde(this->*folder));
    }
    return folders;
}

} // namespace sweeply
