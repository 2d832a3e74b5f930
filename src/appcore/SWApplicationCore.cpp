#include "appcore/SWApplicationCore.h"

#include "appcore/PluginCategories.h"
#include "platform/BundleInfo.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/LaunchServices.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <unordered_set>

namespace sweeply {

SWApplicationCore::SWApplicationCore(const FileManager& files, const FolderConstants& folders,
                                     const LaunchServices* registry, SystemLog& log)
    : m_files(files), m_registry(registry), m_log(log),
      m_applicationsFolder(folders.expandTilde(folders.APPLICATIONSPATH)),
      m_preferencesPaths{folders.expandTilde("~/Library/Preferences"), "/Library/Preferences"},
      m_applicationSupportPaths{folders.expandTilde("~/Library/Application Support"), "/Library/Application Support"} {
    for (const auto& category : findAllPlugins(folders)) {
        if (!category.comesWithApplications)
            continue;
        for (const auto& folder : category.folders) {
            m_pluginsPaths.push_back(folder);
            m_pluginsPaths.push_back(folders.home + folder);
        }
    }
    auto filter = ApplicationFilter::compile(folders.expandTilde("~/Library"));
    if (filter)
        m_applicationFilter = std::move(*filter);
    else
        m_log.log(formatText("Error while constructing regex %@", {filter.error().reason}));
}

const SWApplicationCore::Paths& SWApplicationCore::pluginExtensions() {
    static const Paths extensions{"plugin",     "webplugin", "component", "bundle",      "mdimporter", "qlgenerator",
                                  "mailbundle", "service",   "workflow",  "growlTicket", "osax"};
    return extensions;
}

void SWApplicationCore::createApplicationsArray(std::stop_token stop, std::chrono::milliseconds delay) {
    m_log.log("Started createApplicationsArray");
    {
        std::unique_lock lock(m_mutex);
        m_listIsReady.wait_for(lock, stop, delay, [] { return false; });
        if (stop.stop_requested())
            return;
    }
    std::optional<Paths> registered = readRegistry();
    Paths offered =
        registered ? filtered(*registered) : findApplications(m_applicationsFolder, stop, nullptr, m_problemsOfList);
    m_log.log(formatText("Finished createApplicationsArray and found original %i and filtered %i ",
                         {registered ? registered->size() : 0, offered.size()}));
    {
        std::lock_guard lock(m_mutex);
        m_allApps = std::move(registered);
        m_filteredApps = std::move(offered);
        m_appArrayCreated = true;
    }
    m_listIsReady.notify_all();
}

std::optional<SWApplicationCore::Paths> SWApplicationCore::readRegistry() const {
    if (m_registry == nullptr)
        return std::nullopt;
    auto registered = m_registry->copyAllApplicationURLs();
    if (!registered) {
        m_log.log("Failed to get app list from launch services");
        return std::nullopt;
    }
    return std::move(*registered);
}

SWApplicationCore::Paths SWApplicationCore::filtered(const Paths& registered) const {
    Paths offered;
    std::unordered_set<std::string_view> seen;
    for (const std::string& path : registered) {
        const bool excluded = m_applicationFilter && m_applicationFilter->matches(path);
        if (!excluded && seen.insert(path).second)
            offered.push_back(path);
    }
    return offered;
}

SWApplicationCore::Paths SWApplicationCore::createApplicationsArrayForController(const WorkControl* control) const {
    // Without a controller the token is one that never asks.
    auto applications = waitForApplications(control != nullptr ? control->stopToken() : std::stop_token());
    tellProblemsOfList();
    return applications;
}

SWApplicationCore::Paths SWApplicationCore::waitForApplications(const std::stop_token& stop) const {
    std::unique_lock lock(m_mutex);
    m_listIsReady.wait(lock, stop, [this] { return m_appArrayCreated; });
    return m_filteredApps;
}

void SWApplicationCore::tellProblemsOfList() const {
    for (const auto& problem : m_problemsOfList.all())
        m_files.problems().add(problem);
}

SWApplicationCore::Paths SWApplicationCore::getAllApllicationArray() const {
    tellProblemsOfList();
    std::lock_guard lock(m_mutex);
    return m_allApps ? *m_allApps : m_filteredApps;
}

SWApplicationCore::Paths SWApplicationCore::createApplicationsArrayInPathDeep(std::string_view folder,
                                                                              WorkControl* control) const {
    return findApplications(folder, control != nullptr ? control->stopToken() : std::stop_token(), control,
                            m_files.problems());
}

SWApplicationCore::Paths SWApplicationCore::findApplications(std::string_view folder, const std::stop_token& stop,
                                                             WorkControl* control, ReadProblems& problems) const {
    Paths found;
    DirectoryEnumerator enumerator = m_files.enumeratorAtPath(folder, problems);
    while (const auto entry = enumerator.next()) {
        if (stop.stop_requested())
            break;
        if (pathExtension(entry->path) == "app") {
            std::string path = joinedPath(folder, entry->path);
            const bool isDirectory = entry->type == FileType::Directory ||
                                     (entry->type == FileType::SymbolicLink && m_files.directoryExistsAtPath(path));
            if (isDirectory) {
                enumerator.skipDescendants();
                found.push_back(std::move(path));
            }
        }
        if (control != nullptr)
            control->waitWhilePaused();
    }
    m_log.log(formatText("Finished deep createApplicationsArray for %@ and found %i", {folder, found.size()}));
    return found;
}

std::optional<std::string> SWApplicationCore::bundleIDForAppWithPath(std::string_view path) const {
    const auto info = infoOfBundle(m_files, path);
    const std::string* identifier = info ? info->findString("CFBundleIdentifier") : nullptr;
    if (identifier == nullptr)
        return std::nullopt;
    return *identifier;
}

std::optional<std::string> SWApplicationCore::appNameForAppWithPath(std::string_view path) const {
    {
        std::lock_guard lock(m_mutex);
        if (const auto known = m_names.find(path); known != m_names.end())
            return known->second;
    }
    const auto info = infoOfBundle(m_files, path);
    return info ? nameIn(*info, path) : std::nullopt;
}

std::optional<std::string> SWApplicationCore::nameIn(const plist::Value& info, std::string_view path) const {
    const std::string* name = info.findString("CFBundleName");
    if (name == nullptr)
        name = info.findString("CFBundleExecutable");
    if (name == nullptr)
        return std::nullopt;
    // Another thread may have read the name meanwhile: everybody then keeps to that one.
    std::lock_guard lock(m_mutex);
    return m_names.try_emplace(std::string(path), *name).first->second;
}

ApplicationTerms SWApplicationCore::termsOfAppWithPath(std::string_view path) const {
    ApplicationTerms terms{std::string(path), {}, {}};
    if (const auto info = infoOfBundle(m_files, path)) {
        if (const auto* identifier = info->findString("CFBundleIdentifier"))
            terms.identifier = *identifier;
        terms.name = nameIn(*info, path).value_or(std::string());
    }
    return terms;
}

} // namespace sweeply
