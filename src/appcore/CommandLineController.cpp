#include "appcore/CommandLineController.h"

#include "formats/DisplayEscapes.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/Suggestion.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"
#include "platform/TypedPath.h"

#include <algorithm>
#include <ostream>

namespace sweeply {

namespace {

struct FolderReference {
    std::string_view reference;
    std::string FolderConstants::*folder;
    std::string_view help;
};

constexpr FolderReference kFolderReferences[] = {
    {"-a", &FolderConstants::APPLICATIONSPATH, "\t-a\tSets path to Applications Folder"},
    {"-c", &FolderConstants::HOMECACHESPATH, "\t-c\tSets path to User Cache Folder"},
    {"-C", &FolderConstants::SYSTEMCACHESPATH, "\t-C\tSets path to System Cache Folder"},
    {"-l", &FolderConstants::HOMELOGSPATH, "\t-l\tSets path to User Logs Folder"},
    {"-L", &FolderConstants::SYSTEMLOGSPATH, "\t-L\tSets path to System Logs Folder"},
    {"-LC", &FolderConstants::LIBRARYCACHESPATH, "\t-LC\tSets path to Library Cache Folder"},
    {"-LL", &FolderConstants::LIBRARYLOGSPATH, "\t-LL\tSets path to Library Logs Folder"},
    {"-LP", &FolderConstants::LIBRARYPREFERENCESPATH, "\t-LP\tSets path to Library Preferences Folder"},
    {"-p", &FolderConstants::USERPREFERENCESPATH, "\t-p\tSets path to User Preferences Folder"},
    {"-pane", &FolderConstants::USERPREFERENCEPANESPATH, "\t-pane\tSets path to User Preference Panes Folder"},
    {"-Pane", &FolderConstants::SYSTEMPREFERENCEPANESPATH, "\t-Pane\tSets path to Sustem Preference Panes Folder"},
    {"-w", &FolderConstants::USERWIDGETSPATH, "\t-w\tSets path to User Widgets Folder"},
    {"-W", &FolderConstants::SYSTEMWIDGETSPATH, "\t-W\tSets path to System Widgets Folder\n"},
};

constexpr struct {
    std::string_view title;
    std::string FolderConstants::*folder;
} kShownFolders[] = {
    {"Applications", &FolderConstants::APPLICATIONSPATH},
    {"User Widget", &FolderConstants::USERWIDGETSPATH},
    {"System Widget", &FolderConstants::SYSTEMWIDGETSPATH},
    {"User Cache", &FolderConstants::HOMECACHESPATH},
    {"System Cache", &FolderConstants::SYSTEMCACHESPATH},
    {"User Preferences", &FolderConstants::USERPREFERENCESPATH},
    {"User Preference Panes", &FolderConstants::USERPREFERENCEPANESPATH},
    {"System Preference Panes", &FolderConstants::SYSTEMPREFERENCEPANESPATH},
    {"Library Preferences", &FolderConstants::LIBRARYPREFERENCESPATH},
    {"Library Cache", &FolderConstants::LIBRARYCACHESPATH},
    {"User Logs", &FolderConstants::HOMELOGSPATH},
    {"System Logs", &FolderConstants::SYSTEMLOGSPATH},
    {"Library Logs", &FolderConstants::LIBRARYLOGSPATH},
};

const FolderReference* folderReference(std::string_view argument) {
    const auto* found = std::find_if(std::begin(kFolderReferences), std::end(kFolderReferences),
                                     [&](const FolderReference& entry) { return entry.reference == argument; });
    return found == std::end(kFolderReferences) ? nullptr : found;
}

bool isUser(std::string_view argument) { return argument == "-u" || argument == "--user"; }
bool isHelp(std::string_view argument) { return argument == "-h" || argument == "--help"; }
constexpr std::string_view kShow = "-s";

std::vector<std::string> usersBeside(const FileManager& files, std::string_view home) {
    std::vector<std::string> users;
    const auto entries = files.contentsOfDirectoryAtPath(pathWithoutLastComponent(home));
    for (const auto& entry : entries.value_or(std::vector<DirectoryEntry>())) {
        if (entry.type == FileType::Directory && !entry.name.starts_with('.'))
            users.push_back(entry.name);
    }
    return users;
}

Failure complaint(std::string text) { return Failure(Error{ErrorKind::Other, {}, std::move(text)}); }

} // namespace

CommandLineController::CommandLineController(FolderConstants& folders, const FileManager& files, SystemLog& log,
                                             std::ostream& output)
    : m_folders(folders), m_files(files), m_log(log), m_output(output) {}

bool CommandLineController::isReference(std::string_view argument) {
    return takesValue(argument) || isHelp(argument) || argument == kShow;
}

std::vector<std::string_view> CommandLineController::folderReferences() {
    std::vector<std::string_view> references;
    for (const auto& entry : kFolderReferences)
        references.push_back(entry.reference);
    return references;
}

bool CommandLineController::isUsersFolder(std::string_view reference) {
    const auto* known = folderReference(reference);
    return known != nullptr && (FolderConstants({}).*known->folder).starts_with('~');
}

bool CommandLineController::takesValue(std::string_view reference) {
    return isUser(reference) || folderReference(reference) != nullptr;
}

Result<CommandLineController::Outcome>
CommandLineController::parseArguments(const std::vector<std::string>& arguments) {
    bool show = false;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string& reference = arguments[i];
        if (isHelp(reference)) {
            printHelp();
            return Outcome::Finished;
        }
        if (reference == kShow) {
            show = true;
            continue;
        }
        if (!takesValue(reference)) {
            return complaint(
                formatText("'%@' is unknown reference. Enter -h or --help for detailed information", {reference}));
        }
        if (i + 1 == arguments.size())
            return complaint(formatText("'%@' needs something after it", {reference}));
        const std::string& value = arguments[++i];
        const auto* known = folderReference(reference);
        const auto obeyed = known != nullptr ? setFolder(known->folder, value) : setUser(value);
        if (!obeyed)
            return Failure(obeyed.error());
    }
    if (!show)
        return Outcome::GoOn;
    printFolders();
    return Outcome::Finished;
}

Result<void> CommandLineController::setUser(const std::string& name) {
    const FolderConstants chosen(name);
    const bool isOneName = !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
    if (!isOneName)
        return complaint("Wrong user name");
    if (!m_files.directoryExistsAtPath(chosen.home))
        return complaint("Wrong user name" + suggestionFor(name, usersBeside(m_files, chosen.home)));
    m_log.log(formatText("Sweeply is launched under '%@'", {name}));
    m_folders.userName = chosen.userName;
    m_folders.home = chosen.home;
    return {};
}

Result<void> CommandLineController::setFolder(std::string FolderConstants::*folder, const std::string& path) {
    std::string expanded = m_folders.expandTilde(path);
    auto meant = typedPath(m_files.root(), expanded);
    if (!meant || !m_files.fileExistsAtPath(meant->path))
        return complaint(formatText("Path '%@' doesn't exist", {expanded}));
    if (meant->path != normalisedPath(expanded))
        expanded = std::move(meant->path);
    m_folders.*folder = std::move(expanded);
    return {};
}

void CommandLineController::printFolders() const {
    for (const auto& [title, folder] : kShownFolders)
        m_output << title << " path = " << escapedForDisplay(m_folders.expandTilde(m_folders.*folder)) << '\n';
}

void CommandLineController::printHelp() const {
    m_output << "[reference] [path]\n\treferences:\n";
    for (const FolderReference& entry : kFolderReferences)
        m_output << entry.help << '\n';
    m_output << "\t-s\tShows all paths\n\t-u or\tSets the username to use instead of '~/'\n\t--user\n";
}

} // namespace sweeply
