#include "appcore/ownership/SearchedFolders.h"

#include "appcore/FolderConstants.h"
#include "appcore/SWApplicationCore.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <algorithm>

namespace sweeply {

namespace {

std::vector<std::string> inEach(const std::vector<std::string>& folders, std::initializer_list<const char*> names) {
    std::vector<std::string> inside;
    for (const auto& folder : folders) {
        for (const char* name : names)
            inside.push_back(joinedPath(folder, name));
    }
    return inside;
}

} // namespace

SearchedFolders::SearchedFolders(const FolderConstants& constants, const SWApplicationCore& applications) {
    const auto expanded = [&](const std::string& folder) { return normalisedPath(constants.expandTilde(folder)); };
    const std::vector<std::string> libraries{joinedPath(constants.home, "Library"), "/Library"};
    preferences = {SearchTerms::IdentifierAndName, applications.preferencesPaths()};
    hostPreferences = {SearchTerms::HostIdentifier, inEach(preferences.folders, {"ByHost"})};
    applicationSupport = {SearchTerms::IdentifierAndName, applications.applicationSupportPaths()};
    caches = {SearchTerms::IdentifierAndName, {expanded(constants.HOMECACHESPATH)}};
    logs = {SearchTerms::IdentifierAndName, {expanded(constants.HOMELOGSPATH), expanded(constants.LIBRARYLOGSPATH)}};
    library = {SearchTerms::IdentifierAndName, libraries};
    pdfServices = {SearchTerms::Name, inEach(libraries, {"PDF Services"})};
    launchItems = {SearchTerms::Identifier,
                   inEach(libraries, {"LaunchDaemons", "LaunchAgents", "PrivilegedHelperTools"})};
    growlTickets = {SearchTerms::TicketName, inEach(applicationSupport.folders, {"Growl/Tickets"})};
}

SearchTerms SearchedFolders::termsOf(std::string_view folder) const {
    for (const auto* group : {&preferences, &hostPreferences, &applicationSupport, &caches, &logs, &library,
                              &pdfServices, &launchItems, &growlTickets}) {
        if (std::ranges::find(group->folders, folder) != group->folders.end())
            return group->terms;
    }
    return SearchTerms::None;
}

SearchedEntry searchedEntry(const FileManager& files, std::string_view folder, const DirectoryEntry& entry,
                            SearchTerms terms) {
    // Only a link has to be looked at: the folder says of everything else what it is.
    const bool keepsExtension =
        pathExtension(entry.name).empty() || entry.type == FileType::Directory ||
        (entry.type == FileType::SymbolicLink && files.directoryExistsAtPath(joinedPath(folder, entry.name)));
    return {entry.name, keepsExtension ? entry.name : std::string(nameWithoutExtension(entry.name)), terms};
}

} // namespace sweeply
