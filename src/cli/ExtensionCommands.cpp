#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"
#include "cli/TextOutput.h"
#include "formats/Utf8.h"
#include "platform/Localization.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace sweeply {

namespace {

template<typename Paths>
Json pathsJson(const Paths& paths) {
    Json list = Json::array();
    for (const auto& path : paths)
        list.push_back(validUtf8(path));
    return list;
}

/// A heading and the paths under it; nothing for none.
template<typename Paths>
void printPaths(const std::string& heading, const Paths& paths, const TextStyle& style) {
    if (paths.empty())
        return;
    std::cout << style.heading(heading) << "\n";
    for (const auto& path : paths)
        std::cout << "  " << style.name(path) << "\n";
}

} // namespace

ExitCode runExtensions(Session& session) {
    session.listExtensions();
    auto& application = session.application();
    const auto lists = extensionLists(application);
    if (session.commandLine().wantsJson)
        printJson({{"target", targetJson(application)}, {"modules", modulesJson(application, lists)}});
    else
        printResults(application, lists, session.style(), std::cout);
    return interrupt::wasRequested() ? ExitCode::Interrupted : ExitCode::Done;
}

ExitCode runLeftovers(Session& session) {
    auto& application = session.application();
    application.startInventory();
    // Without the whole list every application that is missing from it would seem to be gone.
    (void)application.applications().createApplicationsArrayForController(nullptr);
    auto cleaner = application.leftoversCleaner([](const Error& error) { complain(error.message()); });
    cleaner.leftoversAnalyse();
    const auto& preferences = cleaner.getPrefFilesToRemove();
    const auto& loginItems = cleaner.getLoginItemsToRemove();
    const auto& launchItems = cleaner.launchFilesToRemove();
    if (session.commandLine().wantsJson) {
        printJson({{"target", targetJson(application)},
                   {"preferences", pathsJson(preferences)},
                   {"launchFiles", pathsJson(launchItems)},
                   {"loginItems", pathsJson(loginItems)}});
        return ExitCode::Done;
    }
    printPaths(localizedString("Preferences"), preferences, session.style());
    printPaths(localizedString("Launch Items"), launchItems, session.style());
    printPaths(localizedString("Login Items"), loginItems, session.style());
    return ExitCode::Done;
}

} // namespace sweeply
