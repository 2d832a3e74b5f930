#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// Where things lie on a Mac: the target user and the well-known folders, as target paths. Filled while the command
/// line is read, constant afterwards.
///
/// The values may begin with "~" and may or may not end with a slash: expand and join before use.
struct FolderConstants {
    /// Begins with the user's home in "/Users".
    explicit FolderConstants(std::string name);

    std::string userName;
    std::string home; ///< no slash at the end

    std::string APPLICATIONSPATH = "/Applications/";
    std::string HOMECACHESPATH = "~/Library/Caches/";
    std::string LIBRARYCACHESPATH = "/Library/Caches/";
    std::string SYSTEMCACHESPATH = "/System/Library/Caches/";
    std::string HOMELOGSPATH = "~/Library/Logs/";
    std::string LIBRARYLOGSPATH = "/Library/Logs/";
    std::string SYSTEMLOGSPATH = "/private/var/log/";
    std::string USERPREFERENCESPATH = "~/Library/Preferences/";
    std::string LIBRARYPREFERENCESPATH = "/Library/Preferences/";
    std::string USERPREFERENCEPANESPATH = "~/Library/PreferencePanes";
    std::string SYSTEMPREFERENCEPANESPATH = "/Library/PreferencePanes";
    std::string USERWIDGETSPATH = "~/Library/Widgets/";
    std::string SYSTEMWIDGETSPATH = "/Library/Widgets/";
    std::string LAUNCHAGENTSPATH = "/Library/LaunchAgents";
    std::string LAUNCHDAEMONSPATH = "/Library/LaunchDaemons";
    std::string DICTIONARIESPATH = "/Library/Dictionaries/";
    std::string SCREENSAVERSPATH = "/Library/Screen Savers/";
    std::string SAFARICOOKIESPATH = "~/Library/Cookies/Cookies.plist";

    std::string QUICKTIMEPLUGINPATH = "/Library/QuickTime/";
    std::string WEBBROWSERSPLUGINPATH = "/Library/Internet Plug-ins/";
    std::string QUICKLOOKPLUGINPATH = "/Library/QuickLook/";
    std::string FINDERPLUGINPATH = "/Library/Contextual Menu Items/";
    std::string SPOTLIGHTPLUGINPATH = "/Library/Spotlight/";
    std::string INPUTMANAGERSPLUGINPATH = "/Library/InputManagers/";
    std::string ITUNESPLUGINPATH = "/Library/iTunes/iTunes Plug-ins/";
    std::string ADDRESSBOOKPLUGINPATH = "/Library/Address Book Plug-Ins/";
    std::string MAILPLUGINPATH = "/Library/Mail/Bundles/";
    std::string SERVICESPATH = "/Library/Services";
    std::string GROWLPATH = "/Library/Application Support/Growl/Tickets/";
    std::string SCRIPTINGADDITIONSPATH = "/Library/ScriptingAdditions";

    /// "~" and "~/..." with the home in place of the "~"; every other path as it is.
    [[nodiscard]] std::string expandTilde(std::string_view path) const;
    /// The path with "~" for the home folder at its beginning.
    [[nodiscard]] std::string abbreviateWithTilde(std::string_view path) const;

    /// The folders that nothing may remove, for RemovalGuard::protect: the system's, the user's, and those above, both
    /// where they are by default and where they are now.
    [[nodiscard]] std::vector<std::string> protectedFolders() const;
};

} // namespace sweeply
