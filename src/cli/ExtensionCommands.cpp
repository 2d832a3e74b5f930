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

/// What one kind of things that were left behind is called, and what there is of it.
struct Leftovers {
    std::string heading;
    const char* jsonKey;
    const char* kind;
    std::vector<std::pair<std::string, Evidence>> items;
};

Json leftoversJson(const Application& application, const std::vector<Leftovers>& leftovers) {
    Json json{{"target", targetJson(application)}};
    Json items = Json::array();
    for (const auto& some : leftovers) {
        Json paths = Json::array();
        for (const auto& [path, evidence] : some.items) {
            paths.push_back(validUtf8(path));
            items.push_back({{"path", validUtf8(path)}, {"kind", some.kind}, {"why", evidenceJson(evidence)}});
        }
        json[some.jsonKey] = std::move(paths);
    }
    json["items"] = std::move(items);
    return json;
}

void printLeftovers(const Leftovers& leftovers, const TextStyle& style) {
    if (leftovers.items.empty())
        return;
    std::cout << style.heading(leftovers.heading) << "\n";
    for (const auto& [path, evidence] : leftovers.items) {
        std::cout << "  " << style.name(path) << "\n";
        if (const auto note = noteOn(style, evidence, true); !note.empty())
            std::cout << "    " << note << "\n";
    }
}

} // namespace

ExitCode runExtensions(Session& session) {
    session.application().startInventory();
    session.listExtensions();
    auto& application = session.application();
    const auto lists = extensionLists(application);
    if (session.commandLine().wantsJson)
        session.print({{"target", targetJson(application)}, {"modules", modulesJson(application, lists)}});
    else
        printResults(application, lists, session.style(), std::cout);
    return interrupt::wasRequested() ? ExitCode::Interrupted : ExitCode::Done;
}

ExitCode runLeftovers(Session& session) {
    auto& application = session.application();
    application.startInventory();
    // Without the whole list every application that is missing from it would seem to be gone.
    (void)application.applications().createApplicationsArrayForController(nullptr);
    auto cleaner =
        application.leftoversCleaner([&](const Error& error) { application.target().files->problems().add(error); });
    cleaner.leftoversAnalyse();
    Leftovers preferences{localizedString("Preferences"), "preferences", "file", {}};
    for (const auto& path : cleaner.getPrefFilesToRemove())
        preferences.items.emplace_back(path, Evidence{EvidenceRule::OrphanedPreference});
    Leftovers launchItems{localizedString("Launch Items"), "launchFiles", "launch-item", {}};
    for (const auto& path : cleaner.launchFilesToRemove())
        launchItems.items.emplace_back(path, cleaner.evidenceOfLaunchFile(path));
    Leftovers loginItems{localizedString("Login Items"), "loginItems", "login-item", {}};
    for (const auto& path : cleaner.getLoginItemsToRemove())
        loginItems.items.emplace_back(path, Evidence{EvidenceRule::DeadLoginItem, EvidenceStrength::Certain, path});
    const std::vector<Leftovers> leftovers{std::move(preferences), std::move(launchItems), std::move(loginItems)};
    if (session.commandLine().wantsJson) {
        session.print(leftoversJson(application, leftovers));
        return ExitCode::Done;
    }
    for (const auto& some : leftovers)
        printLeftovers(some, session.style());
    return ExitCode::Done;
}

} // namespace sweeply
