#pragma once

#include "app/Target.h"
#include "cli/TextStyle.h"
#include "platform/Error.h"
#include "platform/Pace.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace sweeply {

enum class Command {
    ShowFolders,
    Scan,
    Clean,
    Apply,
    Erase,
    Uninstall,
    Receipts,
    Leftovers,
    Extensions,
    Apps,
    Modules,
    Ignore,
    Prefs,
    History,
    Kept,
    Undo,
    Purge,
    Schedule,
    Size,
    Sample
};

/// What the person typed, checked for form but not yet held against a target.
struct CommandLine {
    /// All of it as it was typed, the program's own name first.
    std::vector<std::string> arguments;
    TargetOptions target;
    Pace pace = Pace::full();
    bool isVerbose = false;
    ColorWhen color = ColorWhen::Auto;
    /// Every user of the target in turn, and what they share.
    bool isForAllUsers = false;
    /// A list of roots to work on in place of one, a path of this machine or "-", and how many of them at a time.
    std::optional<std::string> rootsFrom;
    unsigned jobs = 1;
    /// The arguments without the program's name and those two: what is to be done with each target.
    std::vector<std::string> perTarget;

    Command command = Command::ShowFolders;
    bool wantsJson = false;
    bool saysYes = false;
    /// Every module, also those switched off.
    bool wantsAllModules = false;
    /// Modules or paths, as the command takes them.
    std::vector<std::string> operands;
    /// Long runs of items whole.
    bool wantsAllItems = false;
    /// Below each item why it is listed.
    bool wantsReasons = false;
    /// Check also what matches an application weakly.
    bool checksWeakMatches = false;
    /// Items for the named modules to look at, in place of a scan.
    std::vector<std::string> paths;
    /// Overwrite what is erased.
    bool isSecure = false;
    bool isDryRun = false;
    /// The file to write down what would be removed; then nothing is.
    std::optional<std::string> planFile;
    /// Write it over an existing one.
    bool replacesPlan = false;
    /// Keep what cannot be made again, or remove it at once; the preferences decide where nothing is said.
    std::optional<bool> keepsRemoved;
    bool purgesAll = false;
    bool purgesExpired = false;
    std::vector<std::string> modulesToEnable;
    std::vector<std::string> modulesToDisable;
    /// What to do with the ignore list: "list", "add", "remove", or "update" the shared one.
    std::string ignoreAction;
    /// Applications, and not items, are listed, added or removed.
    bool ignoresApplications = false;
    /// Tell how it went where somebody sees it who does not look at the terminal.
    bool notifies = false;
    /// When a schedule is due, as systemd writes it; not checked where it is the person's own.
    std::string calendar = "weekly";
    bool hasOwnCalendar = false;
    /// What to do with schedules: "add", "list" or "remove".
    std::string scheduleAction = "add";
    unsigned sampleScale = 1;
};

/// Reads the arguments, the program's own name first. Nothing when they only asked for help or the version, which then
/// stands on `output`. An error is one line for standard error.
[[nodiscard]] Result<std::optional<CommandLine>> parseCommandLine(const std::vector<std::string>& arguments,
                                                                  std::ostream& output);

/// Does the command show something first and then ask whether to remove it?
[[nodiscard]] bool asksFirst(const CommandLine& line);

/// How standard output is to look, as the person asked for it and `terminal` allows.
[[nodiscard]] TextStyle styleFor(const CommandLine& line, const Terminal& terminal);

} // namespace sweeply
