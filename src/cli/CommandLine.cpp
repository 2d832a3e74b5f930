#include "cli/CommandLine.h"

#include "appcore/CommandLineController.h"
#include "cli/AllUsers.h"
#include "cli/Completion.h"
#include "cli/sample/SampleVolume.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/Suggestion.h"
#include "platform/SystemLog.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <ostream>

namespace sweeply {

namespace {

constexpr const char* kUsage = R"(Sweeply finds files that take space without serving anybody, and removes them.

Usage: sweeply-cli [OPTION...] [REFERENCE PATH...] COMMAND ...

Options, before the command:
  --root DIR           the Mac's disk, image or backup is in DIR (else: this machine)
  --roots-from FILE    work on every root that FILE (-: standard input) names, one a line
  --jobs N             so many of them at a time (else: one)
  -u, --user NAME      whose files are meant (else: the only user there)
  --all-users          scan, clean, leftovers, history: every user in turn, and what they share
  --os VERSION         which system it is: 10.4, 10.5, 10.6 (else: as it says itself)
  --arch intel|ppc     which processors the Mac has (else: as its system tells)
  --pace full|gentle   full speed, or with rests between the items
  --color WHEN         auto (on a terminal), always, never
  --verbose            copy the lines of the system log to standard error
  --version            print the version
  -h, --help           print this

Commands:
  scan [MODULE...]     show what would be removed; changes nothing but Sweeply's own settings
  scan MODULE PATH...  the same for applications and folders
  clean [MODULE...]    scan, show, ask, remove
  scan ... --plan FILE write down what would be removed, to look it through and change the checks; also uninstall
  apply FILE           scan again, show, ask, and remove what is checked in the plan
  erase PATH...        show, ask, remove; overwrite first with --secure
  uninstall PATH...    remove applications, packages and extensions with everything that belongs to them
  extensions           list widgets, preference panes and plug-ins
  leftovers            list what applications that are gone left behind
  receipts             list what installer packages left behind
  apps                 list the applications
  modules              list the modules and which are switched on
  ignore               list, add or remove the items that are never checked
  ignore apps          the same for applications that are left alone
  ignore --update      fetch a newer shared list of such applications
  history [RUN]        list the runs that changed something, or the items of one
  kept                 list what was kept and can be put back
  undo [RUN] [PATH...] put back what a run kept (else: the newest that kept something)
  purge RUN...         remove what was kept for good; or --all of it, or what is --expired
  schedule [MODULE...] clean every week, or when --monthly or --calendar says, without a person
  schedule list        list what is scheduled; 'schedule remove [NAME...]' ends it
  prefs [KEY [VALUE]]  list, read or set Sweeply's own settings
  size PATH...         say how much space files and folders take
  sample DIR           write a small Mac OS X volume to try things on
  completion SHELL     print the lines that teach bash, zsh or fish these commands
  COMMAND --help       more about one of them

)";

/// In the order of ColorWhen.
constexpr std::array<std::string_view, 3> kColorNames{"auto", "always", "never"};

Failure complaint(std::string text) { return Failure(Error{ErrorKind::Other, {}, std::move(text)}); }

/// The references' own help, word for word.
void printReferences(std::ostream& output) {
    const auto files = FileManager::open("/");
    if (!files)
        return;
    struct Silence final : SystemLog {
        void log(std::string_view) override {}
    } silence;
    FolderConstants folders{std::string()};
    (void)CommandLineController(folders, **files, silence, output).parseArguments({"sweeply-cli", "-h"});
}

/// More at a time are of no use to any disk.
constexpr unsigned kMostJobs = 64;

bool readJobs(const std::string& text, unsigned& jobs) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), jobs);
    return error == std::errc() && end == text.data() + text.size() && jobs >= 1 && jobs <= kMostJobs;
}

/// Reads what stands before the command and takes it off `arguments`. False when that asked for help or the version.
Result<bool> readGlobalOptions(std::vector<std::string>& arguments, CommandLine& line, std::ostream& output) {
    std::size_t next = 1;
    const auto valueOf = [&](const std::string& option) -> Result<std::string> {
        if (next >= arguments.size())
            return complaint(formatText("'%@' needs something after it", {option}));
        return arguments[next++];
    };
    while (next < arguments.size() && arguments[next].starts_with('-')) {
        const auto first = static_cast<std::ptrdiff_t>(next);
        std::string option = arguments[next++];
        if (const auto equals = option.find('='); option.starts_with("--") && equals != std::string::npos) {
            arguments.insert(arguments.begin() + static_cast<std::ptrdiff_t>(next), option.substr(equals + 1));
            option.erase(equals);
        }
        if (option == "-h" || option == "--help") {
            output << kUsage;
            printReferences(output);
            return false;
        }
        if (option == "--version") {
            output << "sweeply-cli " << SWEEPLY_VERSION << "\n";
            return false;
        }
        if (option == "--verbose") {
            line.isVerbose = true;
        } else if (option == "--all-users") {
            line.isForAllUsers = true;
        } else if (option == "--roots-from" || option == "--jobs") {
            auto value = valueOf(option);
            if (!value)
                return Failure(value.error());
            if (option == "--roots-from")
                line.rootsFrom = *std::move(value);
            else if (!readJobs(*value, line.jobs))
                return complaint(formatText("--jobs: '%@' is not a number from 1 to %i", {*value, kMostJobs}));
            continue;
        } else if (option == "--root" || option == "--os" || option == "--arch" || option == "--pace" ||
                   option == "--color") {
            auto value = valueOf(option);
            if (!value)
                return Failure(value.error());
            if (option == "--root")
                line.target.root = *value;
            else if (option == "--os")
                line.target.osVersion = *value;
            else if (option == "--arch" && (*value == "intel" || *value == "ppc"))
                line.target.processorFamily = *value;
            else if (option == "--arch")
                return complaint(formatText("--arch: '%@' is neither 'intel' nor 'ppc'", {*value}));
            else if (option == "--color") {
                const auto when = std::ranges::find(kColorNames, *value);
                if (when == kColorNames.end())
                    return complaint(formatText("--color: '%@' is none of 'auto', 'always' and 'never'", {*value}));
                line.color = static_cast<ColorWhen>(when - kColorNames.begin());
            } else if (*value == "full" || *value == "gentle")
                line.pace = *value == "full" ? Pace::full() : Pace::gentle();
            else
                return complaint(formatText("--pace: '%@' is neither 'full' nor 'gentle'", {*value}));
        } else if (CommandLineController::isReference(option)) {
            line.target.references.push_back(option);
            if (CommandLineController::takesValue(option)) {
                auto value = valueOf(option);
                if (!value)
                    return Failure(value.error());
                line.target.references.push_back(*std::move(value));
            }
        } else {
            return complaint(
                formatText("'%@' is unknown reference. Enter -h or --help for detailed information", {option}));
        }
        line.perTarget.push_back(option);
        line.perTarget.insert(line.perTarget.end(), arguments.begin() + first + 1,
                              arguments.begin() + static_cast<std::ptrdiff_t>(next));
    }
    arguments.erase(arguments.begin() + 1, arguments.begin() + static_cast<std::ptrdiff_t>(next));
    line.perTarget.insert(line.perTarget.end(), arguments.begin() + 1, arguments.end());
    return true;
}

void describeIgnore(CLI::App& ignore, CommandLine& line) {
    line.ignoreAction = "list";
    ignore.add_flag("--json", line.wantsJson, "Print one JSON object");
    ignore.add_flag_callback(
        "--update", [&line] { line.ignoreAction = "update"; }, "Fetch a newer shared list of applications");
    ignore.require_subcommand(0, 1);
    const auto addActions = [&line](CLI::App& list, const char* operands) {
        const auto addAction = [&](const char* name, const char* description) {
            auto* sub = list.add_subcommand(name, description);
            sub->callback([&line, name] { line.ignoreAction = name; });
            sub->fallthrough();
            return sub;
        };
        addAction("list", "List them");
        addAction("add", "Add some")->add_option("PATH", line.operands, operands)->required();
        addAction("remove", "Remove some")->add_option("PATH", line.operands, operands)->required();
    };
    addActions(ignore, "Items of the target");
    auto* apps = ignore.add_subcommand("apps", "The applications that are left alone");
    apps->parse_complete_callback([&line] { line.ignoresApplications = true; });
    apps->require_subcommand(0, 1);
    apps->fallthrough();
    addActions(*apps, "Applications, or folders that hold some");
}

void describeSchedule(CLI::App& schedule, CommandLine& line) {
    schedule.add_flag("--json", line.wantsJson, "Print one JSON object");
    schedule.add_option("MODULE", line.operands,
                        "Modules, by the names that 'modules' lists; none: those switched on that need no person");
    auto* weekly = schedule.add_flag_callback(
        "--weekly", [&line] { line.calendar = "weekly"; }, "In the night to Monday, as is done without an option");
    auto* monthly = schedule.add_flag_callback(
        "--monthly", [&line] { line.calendar = "monthly"; }, "In the night to the first of the month");
    auto* calendar =
        schedule.add_option("--calendar", line.calendar, "When, as systemd.time(7) writes times: 'Sat 03:00'");
    calendar->each([&line](const std::string&) { line.hasOwnCalendar = true; });
    weekly->excludes(monthly)->excludes(calendar);
    monthly->excludes(calendar);
    schedule.require_subcommand(0, 1);
    const auto addAction = [&](const char* name, const char* description) {
        auto* sub = schedule.add_subcommand(name, description);
        sub->parse_complete_callback([&line, name] { line.scheduleAction = name; });
        sub->add_flag("--json", line.wantsJson, "Print one JSON object");
        return sub;
    };
    addAction("list", "List what is scheduled");
    addAction("remove", "End schedules")
        ->add_option("NAME", line.operands, "Schedules, as the list names them; none: every one");
}

void describeCommands(CLI::App& app, CommandLine& line) {
    app.require_subcommand(1);
    const auto add = [&](Command command, const char* name, const char* description) {
        auto* sub = app.add_subcommand(name, description);
        sub->callback([&line, command] { line.command = command; });
        return sub;
    };
    const auto addJson = [&](CLI::App* sub) { sub->add_flag("--json", line.wantsJson, "Print one JSON object"); };
    const auto addWhy = [&](CLI::App* sub) {
        sub->add_flag("--why", line.wantsReasons, "Say below each item why it is listed");
    };
    const auto addListing = [&](CLI::App* sub) {
        addJson(sub);
        sub->add_flag("--all-items", line.wantsAllItems, "List long runs of items whole, on a terminal as well");
        addWhy(sub);
    };
    const auto addModules = [&](CLI::App* sub) {
        sub->add_option("MODULE", line.operands,
                        "Modules, by the names that 'modules' lists; none: those switched on. Paths after them are "
                        "looked at in place of a scan");
        sub->add_flag("--all", line.wantsAllModules, "Every module, also those switched off");
        addListing(sub);
        return sub;
    };

    const auto addPlan = [&](CLI::App* sub) {
        auto* plan = sub->add_option("--plan", line.planFile,
                                     "Write what would be removed to FILE (- is standard output), for 'apply'")
                         ->type_name("FILE");
        sub->add_flag("--force", line.replacesPlan, "Write the plan over an existing file")->needs(plan);
        return plan;
    };

    addPlan(addModules(add(Command::Scan, "scan", "Show what would be removed")));

    auto* clean = add(Command::Clean, "clean", "Scan, show what was found, ask, and remove what is checked");
    addModules(clean);
    clean->add_flag("--yes", line.saysYes, "Remove without asking");
    clean->add_flag("--notify", line.notifies,
                    "Tell how it went by a note on the desktop, or in the system log where there is no desktop");

    auto* apply = add(Command::Apply, "apply", "Scan again, show, ask, and remove what is checked in a plan");
    addListing(apply);
    apply->add_option("FILE", line.operands, "A plan that 'scan' or 'uninstall' wrote; - is standard input")
        ->required()
        ->expected(1);
    apply->add_flag("--yes", line.saysYes, "Remove without asking");

    auto* erase = add(Command::Erase, "erase", "Remove files and folders, overwritten first if that is wanted");
    addListing(erase);
    erase->add_option("PATH", line.operands, "Items of the target")->required();
    erase->add_flag("--secure", line.isSecure,
                    "Overwrite files first; disks with flash memory, snapshots and file systems that copy on writing "
                    "may keep the old contents elsewhere");
    erase->add_flag("--dry-run", line.isDryRun, "Show what would be removed, and remove nothing");
    erase->add_flag("--yes", line.saysYes, "Remove without asking");

    auto* uninstall = add(Command::Uninstall, "uninstall",
                          "Remove applications, packages and extensions with everything that belongs to them");
    addListing(uninstall);
    uninstall
        ->add_option("PATH", line.operands,
                     "Applications, packages, or folders of them; widgets, preference panes, plug-ins")
        ->required();
    uninstall->add_flag("--dry-run", line.isDryRun, "Show what would be removed, and remove nothing");
    uninstall->add_flag("--weak", line.checksWeakMatches,
                        "Check also what matches weakly, where no other application claims it");
    auto* yes =
        uninstall->add_flag("--yes", line.saysYes, "Remove without asking; other questions get their safe answers");

    for (auto* sub : {clean, uninstall, apply}) {
        sub->add_flag_callback(
            "--keep", [&line] { line.keepsRemoved = true; },
            "Keep what cannot be made again, so that 'undo' puts it back");
        sub->add_flag_callback(
            "--no-keep", [&line] { line.keepsRemoved = false; }, "Remove it for good, whatever else is said");
    }
    addPlan(uninstall)->excludes(yes)->excludes("--keep")->excludes("--no-keep");

    auto* history = add(Command::History, "history", "List the runs that changed something, or the items of one");
    addJson(history);
    history->add_option("RUN", line.operands, "A run, as the list names it")->expected(0, 1);
    addJson(add(Command::Kept, "kept", "List what was kept and can be put back"));
    auto* undo = add(Command::Undo, "undo", "Put back what a run kept");
    addJson(undo);
    undo->add_option("RUN PATH", line.operands,
                     "A run, without which the newest that has something kept is meant; and items of it, without which "
                     "all are");
    auto* purge = add(Command::Purge, "purge", "Remove what was kept for good");
    addJson(purge);
    purge->add_option("RUN", line.operands, "Runs, as the list names them");
    purge->add_flag("--all", line.purgesAll, "Whatever is kept");
    purge->add_flag("--expired", line.purgesExpired, "What was to be kept until now");

    addListing(add(Command::Extensions, "extensions", "List the installed widgets, preference panes and plug-ins"));

    auto* leftovers = add(Command::Leftovers, "leftovers",
                          "List preferences, launch items and login items of applications that are gone");
    addJson(leftovers);
    addWhy(leftovers);

    addJson(add(Command::Receipts, "receipts", "List the receipts of installer packages"));

    addJson(add(Command::Apps, "apps", "List the applications"));

    auto* modules = add(Command::Modules, "modules", "List the modules; switch them on and off");
    addJson(modules);
    modules->add_option("--enable", line.modulesToEnable, "Switch a module on");
    modules->add_option("--disable", line.modulesToDisable, "Switch a module off");

    describeIgnore(*add(Command::Ignore, "ignore", "The items that scans list unchecked"), line);

    describeSchedule(*add(Command::Schedule, "schedule", "Clean again and again without a person"), line);

    auto* prefs = add(Command::Prefs, "prefs", "List, read or set Sweeply's own settings");
    addJson(prefs);
    prefs->add_option("KEY VALUE", line.operands, "A setting, and what to set it to")->expected(0, 2);

    auto* size = add(Command::Size, "size", "Say how much space files and folders take, in whole blocks");
    addJson(size);
    size->add_option("PATH", line.operands, "Files and folders")->required();

    app.add_subcommand("completion", "Print the lines that teach a shell our commands")
        ->add_option("SHELL", line.operands, "bash, zsh or fish")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}))
        ->expected(1);

    auto* sample = add(Command::Sample, "sample", "Write a small Mac OS X volume to try things on");
    sample->add_option("DIR", line.operands, "A folder that is empty or not there yet")->required()->expected(1);
    sample->add_option("--scale", line.sampleScale, "Multiplies caches, logs and applications")
        ->check(CLI::Range(1U, kLargestSampleScale));
}

/// Modules and paths stand in one row; paths show by how they begin, or by a slash.
void separatePaths(CommandLine& line) {
    if (line.command != Command::Scan && line.command != Command::Clean)
        return;
    const auto paths = std::ranges::stable_partition(line.operands, [](const std::string& operand) {
        return operand.empty() || (std::string_view("~.").find(operand.front()) == std::string_view::npos &&
                                   operand.find('/') == std::string::npos);
    });
    line.paths.assign(paths.begin(), paths.end());
    line.operands.erase(paths.begin(), paths.end());
}

bool worksOnTarget(Command command) {
    return command != Command::ShowFolders && command != Command::Schedule && command != Command::Size &&
           command != Command::Sample;
}

/// What stands before the command and what stands after it must go together.
Result<void> checkCombinations(const CommandLine& line) {
    if (line.jobs > 1 && !line.rootsFrom)
        return complaint("--jobs goes with --roots-from");
    if (line.rootsFrom && line.target.root)
        return complaint("--roots-from and --root exclude each other");
    if (line.rootsFrom && !worksOnTarget(line.command))
        return complaint("--roots-from does not go with this command");
    if (line.rootsFrom && asksFirst(line))
        return complaint("nobody answers for every target; say --yes to remove without a question");
    if (line.notifies && (line.rootsFrom || line.isForAllUsers))
        return complaint("--notify tells of one user's clean");
    if (line.planFile && (line.rootsFrom || line.isForAllUsers))
        return complaint("a plan says what is done for one user of one target");
    if (line.rootsFrom && line.command == Command::Apply && line.operands.front() == "-")
        return complaint("a plan on standard input cannot be read for every target");
    if (!line.isForAllUsers)
        return {};
    if (!goesForAllUsers(line.command))
        return complaint("--all-users goes with scan, clean, leftovers and history");
    if (!line.paths.empty())
        return complaint("--all-users goes with whole scans, not with single paths");
    if (line.command == Command::History && !line.operands.empty())
        return complaint("--all-users goes with the list of all runs; for one of them say whose it is with -u");
    // Two users with one folder would both have what is in it.
    const auto& references = line.target.references;
    for (auto reference = references.begin(); reference != references.end(); ++reference) {
        if (*reference == "-u" || *reference == "--user")
            return complaint("--all-users and -u exclude each other");
        if (!CommandLineController::takesValue(*reference))
            return complaint("--all-users and -s exclude each other");
        if (CommandLineController::isUsersFolder(*reference++) && !reference->starts_with("~/"))
            return complaint(
                formatText("with --all-users a folder for '%@' must begin with '~/'", {*std::prev(reference)}));
    }
    return {};
}

} // namespace

Result<std::optional<CommandLine>> parseCommandLine(const std::vector<std::string>& arguments, std::ostream& output) {
    CommandLine line;
    line.arguments = arguments;
    std::vector<std::string> rest = arguments;
    const auto goesOn = readGlobalOptions(rest, line, output);
    if (!goesOn)
        return Failure(goesOn.error());
    if (!*goesOn)
        return std::nullopt;
    const bool onlyShowsFolders = std::ranges::find(line.target.references, "-s") != line.target.references.end();
    if (rest.size() <= 1 && !onlyShowsFolders)
        return complaint("no command. Enter -h or --help for detailed information");
    if (rest.size() <= 1) {
        const auto goTogether = checkCombinations(line);
        return goTogether ? Result<std::optional<CommandLine>>(line) : Failure(goTogether.error());
    }

    CLI::App app("sweeply-cli", "sweeply-cli");
    describeCommands(app, line);
    std::vector<std::string> commands;
    for (const auto* sub : app.get_subcommands([](const CLI::App*) { return true; }))
        commands.push_back(sub->get_name());
    if (std::ranges::find(commands, rest[1]) == commands.end())
        return complaint(formatText("'%@' is no command%@. Enter -h or --help for detailed information",
                                    {rest[1], suggestionFor(rest[1], commands)}));
    try {
        app.parse(std::vector<std::string>(rest.rbegin(), rest.rend() - 1)); // the library takes them from the back
    } catch (const CLI::CallForHelp& help) {
        app.exit(help, output, output);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        return complaint(std::string(error.what()));
    }
    if (app.got_subcommand("completion")) {
        output << completionScript(app, line.operands.front());
        return std::nullopt;
    }
    if (line.planFile == "-" && line.wantsJson)
        return complaint("--json and --plan - would both write to standard output");
    line.isDryRun = line.isDryRun || line.planFile;
    separatePaths(line);
    if (const auto goTogether = checkCombinations(line); !goTogether)
        return Failure(goTogether.error());
    return line;
}

bool asksFirst(const CommandLine& line) {
    return (line.command == Command::Clean || line.command == Command::Apply || line.command == Command::Erase ||
            line.command == Command::Uninstall) &&
           !line.isDryRun && !line.saysYes;
}

TextStyle styleFor(const CommandLine& line, const Terminal& terminal) {
    auto style = TextStyle::of(terminal, line.color);
    style.foldsLongRuns = style.foldsLongRuns && !line.wantsAllItems && !line.wantsReasons;
    style.tellsReasons = line.wantsReasons;
    return style;
}

} // namespace sweeply
