#include "modules/languages/LanguagesController.h"

#include "appcore/FolderConstants.h"
#include "appcore/SWApplicationCore.h"
#include "engine/IgnoreList.h"
#include "modules/languages/LanguageKeepList.h"
#include "modules/languages/LocalizationLinks.h"
#include "modules/languages/LocalizationNames.h"
#include "platform/Alerts.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Languages.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace sweeply {

namespace {

/// What a bar shows before the number of applications is known.
constexpr std::uint32_t kWaitingForApplications = 200;

} // namespace

LanguagesController::LanguagesController(const ModuleServices& services, ScanCoordinator& coordinator,
                                         const LanguageKeepList& keepList, Person person)
    : ADScanControllerView(services.engine, coordinator), m_languages(services), m_keepList(keepList),
      m_person(std::move(person)) {
    rootNode()->setName(localizedString("LanguageFiles"));
    initUserDefaults();
}

void LanguagesController::scanThread() {
    prepareForScan();
    if (!confirmsNativeLanguages())
        return;
    setTotalProcentage(kWaitingForApplications);
    incProgress();
    auto look = startLook();
    const auto applications = m_languages.applicationsToScan(this);
    look.surveys.expect(applications);
    setTotalProcentage(static_cast<std::uint32_t>(applications.size()));
    {
        const std::lock_guard lock(services().treeLock);
        m_applications.clear();
    }
    for (const auto& application : applications) {
        if (stopped())
            return;
        analyzeApplication(application, look);
        incProgress();
        sleepAfterItem();
        waitWhilePaused();
    }
}

bool LanguagesController::confirmsNativeLanguages() {
    const auto found = m_keepList.nativeLanguages();
    if (!found) {
        reportProblem(found.error());
        return false;
    }
    const auto& codes = *found;
    if (codes.empty())
        return true;
    setTotalProcentage(kWaitingForApplications);
    setPaused(true);
    bool goesOn = false;
    services().mainThread.runAndWait([&] { goesOn = showLanguageAlert(codes); });
    setPaused(false);
    return goesOn && !stopped();
}

bool LanguagesController::showLanguageAlert(const std::vector<std::string>& codes) {
    Alert alert;
    alert.style = Alert::Style::Informational;
    alert.title = localizedString("Here is a list of languages you would probably like to keep in the applications of "
                                  "your Mac and some of them could be your native languages:");
    for (const auto& code : codes)
        alert.text += formatText("%@\n", {languageNameForPeople(code)});
    alert.text += localizedString("\nThese languages are set to be scanned for and removed in Sweeply Preferences at "
                                  "this point. Please confirm what would you like to do next:");
    alert.buttons = {localizedButton("Cancel"), localizedButton("Open Language Preferences"),
                     localizedButton("Remove")};
    enum Button : std::size_t { Cancel, OpenPreferences, Remove };
    const auto answer = m_person.alerts.runAlert(alert).button;
    if (answer == OpenPreferences)
        services().mainThread.runLater(m_person.showLanguagePreferences);
    return answer == Remove;
}

LanguagesController::Look LanguagesController::startLook() {
    m_languagesByCode = {};
    auto names = std::make_shared<LocalizationNames>(m_keepList);
    auto surveys = m_languages.surveys.takePart([names](std::string_view name, FileType type) {
        if (!LocalizationNames::isLocalization(name))
            return Interest::Below;
        const bool isWanted =
            type == FileType::Directory ? !names->unwantedLanguage(name).empty() : type == FileType::SymbolicLink;
        return isWanted ? Interest::Item : Interest::Nothing;
    });
    return {std::move(names), std::move(surveys)};
}

const LanguagesController::Language& LanguagesController::languageOf(const std::string& code) {
    const auto [known, isNew] = m_languagesByCode.try_emplace(code);
    if (isNew) {
        auto name = displayNameOfLanguage(code);
        if (!name)
            services().log.log(formatText("Failed to get localized language name for %@", {code}));
        known->second = {std::move(name).value_or(code), SharedEvidence(EvidenceRule::LanguageNotKept, code)};
    }
    return known->second;
}

LanguagesController::Localizations LanguagesController::languagesForApplicationAtPath(const std::string& path,
                                                                                      Look& look) {
    auto [items, failure] = look.surveys.surveyOf(path, stopToken());
    if (failure)
        services().log.log(formatText("[Languages] Exception for app %@: %@", {path, failure->reason}));
    LocalizationLinks links;
    for (const auto& item : items) {
        if (item.type == FileType::SymbolicLink)
            links.add(m_languages.files, item.path);
    }
    std::unordered_set<std::string> needed; // by languages that stay
    for (const auto& [link, neighbour] : links.all()) {
        if (look.names->unwantedLanguage(lastPathComponent(link)).empty())
            needed.insert(links.endOf(link));
    }
    Localizations found;
    std::unordered_map<std::string, Localization*> going; // by folder
    for (auto& item : items) {
        if (item.type != FileType::Directory || needed.contains(item.path))
            continue;
        auto& localization = found[look.names->unwantedLanguage(lastPathComponent(item.path))];
        localization.item += item.measured;
        localization.item.identity.kind = ItemKind::Folder;
        if (!links.all().empty())
            going.emplace(item.path, &localization);
        localization.folders.push_back(std::move(item.path));
    }
    // A language is known by its first folder, in whatever order a volume lists them.
    for (auto& [code, localization] : found)
        std::ranges::sort(localization.folders);
    for (const auto& [link, neighbour] : links.all()) {
        if (const auto folder = going.find(links.endOf(link)); folder != going.end())
            folder->second->links.push_back(link);
    }
    return found;
}

void LanguagesController::analyzeApplication(const std::string& path, Look& look) {
    setCurrentItem(path);
    const auto localizations = languagesForApplicationAtPath(path, look);
    {
        const std::lock_guard lock(services().treeLock);
        m_applications[path] = localizations;
    }
    if (localizations.empty())
        return;
    const auto ignored = m_languages.ignoreList.ignoreListForController(kModuleKey);
    const auto identifier = ignored.empty() ? std::nullopt : m_languages.applications.bundleIDForAppWithPath(path);
    const bool isIgnored = identifier && std::ranges::find(ignored, *identifier) != ignored.end();
    const auto application = Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, 0, path, !isIgnored);
    application->setStoreState(true);
    application->setNeedExpand(true);
    for (const auto& [code, localization] : localizations) {
        const auto& [name, evidence] = languageOf(code);
        auto language =
            Node::nodeWithName(name, Icon::Language, static_cast<std::uint32_t>(localization.folders.size()),
                               localization.item, code, application->ifEnabled());
        language->setEvidence(evidence);
        language->setShouldWait(false);
        application->addChild(std::move(language));
        for (std::size_t i = 0; i < localization.folders.size(); ++i)
            incFoundObjectsCount();
    }
    addChildNode(application);
    updateInterfaceAndWaitUntilDone(false);
}

bool LanguagesController::isListed(const std::string& application) const {
    const std::lock_guard lock(services().treeLock);
    return rootNode()->childWithEqualPath(application) != nullptr;
}

void LanguagesController::analyzeFile(const std::string& path) {
    if (const auto known = m_keepList.nativeLanguages(); !known)
        return reportProblem(known.error());
    auto look = startLook();
    const std::string item = normalisedPath(m_languages.folders.expandTilde(path));
    const auto analyze = [this, &look](const std::string& application) {
        // What is listed already would count twice.
        if (!isListed(application))
            analyzeApplication(application, look);
    };
    if (pathExtension(item) == "app")
        return analyze(item);
    auto walk = m_languages.files.enumeratorAtPath(item);
    while (const auto entry = walk.next()) {
        if (stopped())
            return;
        if (entry->type != FileType::Directory || pathExtension(entry->path) != "app")
            continue;
        walk.skipDescendants();
        analyze(joinedPath(item, entry->path));
        waitWhilePaused();
    }
}

const LanguagesController::Localization* LanguagesController::localizationOf(const Node& language) const {
    const auto* application = language.parentNode();
    const auto record = application ? m_applications.find(application->path()) : m_applications.end();
    if (record == m_applications.end())
        return nullptr;
    const auto localization = record->second.find(language.path());
    return localization == record->second.end() ? nullptr : &localization->second;
}

std::vector<std::string> LanguagesController::pathsBehind(const Node& node) const {
    const std::lock_guard lock(services().treeLock);
    const auto* localization = localizationOf(node);
    if (!localization)
        return {};
    auto paths = localization->folders;
    paths.insert(paths.end(), localization->links.begin(), localization->links.end());
    return paths;
}

ChangeRequest LanguagesController::changeFor(const Node& node) const {
    const std::lock_guard lock(services().treeLock);
    auto request = requestFor(node, Operation::Remove);
    if (const auto* localization = localizationOf(node)) {
        request.parts = localization->folders;
        request.hasParts = request.isSeenByParts = true;
        request.path = request.parts.front();
    }
    return request;
}

ChangeOutcome LanguagesController::cleanThisNode(Node& node) {
    std::vector<std::string> links;
    {
        const std::lock_guard lock(services().treeLock);
        if (const auto* localization = localizationOf(node))
            links = localization->links;
    }
    const auto request = changeFor(node);
    if (!request.hasParts)
        return {OutcomeKind::Failed, {ErrorKind::Other, request.path, "no such language was found"}};
    const auto outcome = change(request);
    if (outcome.isDone())
        removeDanglingLinks(links, request);
    return outcome;
}

void LanguagesController::removeDanglingLinks(const std::vector<std::string>& links, const ChangeRequest& language) {
    for (const auto& link : links) {
        // One that was given another destination since leads somewhere.
        const auto neighbour = LocalizationLinks::neighbourOf(m_languages.files, link);
        if (neighbour.empty() || !m_languages.files.isMissingAtPath(neighbour))
            continue;
        ChangeRequest request{Operation::Remove, link, ChangedKind::Link};
        request.module = language.module;
        request.why = language.why;
        (void)change(request); // what stays is in the record and among the failures
    }
}

} // namespace sweeply
