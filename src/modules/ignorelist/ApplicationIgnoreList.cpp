#include "modules/ignorelist/ApplicationIgnoreList.h"

#include "appcore/SWApplicationCore.h"
#include "modules/ignorelist/IgnoreListPreferences.h"
#include "platform/FileManager.h"
#include "platform/UserDefaults.h"

#include <algorithm>

namespace sweeply {

ApplicationIgnoreList::ApplicationIgnoreList(UserDefaults& defaults, const FileManager& files,
                                             const SWApplicationCore& applications)
    : m_defaults(defaults), m_files(files), m_applications(applications) {}

std::vector<std::string> ApplicationIgnoreList::stored() const {
    const auto value = m_defaults.objectForKey(ignorelist::kApplications);
    return value ? plist::textsOf(*value) : std::vector<std::string>();
}

std::vector<std::string> ApplicationIgnoreList::ignoreAppsArray() const { return stored(); }

void ApplicationIgnoreList::store(const std::vector<std::string>& identifiers) {
    m_defaults.setObject(ignorelist::kApplications, plist::arrayOf(identifiers));
    setNeedUpdate(true);
}

void ApplicationIgnoreList::setNewAppsArray(const std::vector<std::string>& identifiers) {
    const std::lock_guard lock(m_mutex);
    store(identifiers);
}

bool ApplicationIgnoreList::contains(std::string_view identifier) const {
    const auto identifiers = stored();
    return std::ranges::find(identifiers, identifier) != identifiers.end();
}

bool ApplicationIgnoreList::addBundleToList(const std::string& identifier) {
    const std::lock_guard lock(m_mutex);
    (void)m_defaults.synchronize(); // another Sweeply may have added some since we read the file
    auto identifiers = stored();
    if (std::ranges::find(identifiers, identifier) != identifiers.end())
        return false;
    identifiers.push_back(identifier);
    store(identifiers);
    (void)m_defaults.synchronize(); // a failure is logged by the preferences themselves
    return true;
}

bool ApplicationIgnoreList::removeBundleFromList(const std::string& identifier) {
    const std::lock_guard lock(m_mutex);
    (void)m_defaults.synchronize();
    auto identifiers = stored();
    if (std::erase(identifiers, identifier) == 0)
        return false;
    store(identifiers);
    (void)m_defaults.synchronize();
    return true;
}

std::vector<std::string> ApplicationIgnoreList::identifiersAt(const std::string& path) const {
    if (!m_files.directoryExistsAtPath(path))
        return {};
    if (auto identifier = m_applications.bundleIDForAppWithPath(path))
        return {std::move(*identifier)};
    std::vector<std::string> identifiers;
    for (const auto& application : m_applications.createApplicationsArrayInPathDeep(path, nullptr)) {
        auto identifier = m_applications.bundleIDForAppWithPath(application);
        if (identifier && std::ranges::find(identifiers, *identifier) == identifiers.end())
            identifiers.push_back(std::move(*identifier));
    }
    return identifiers;
}

std::vector<std::string> ApplicationIgnoreList::addFilesToIgnoreList(const std::vector<std::string>& paths) {
    std::vector<std::string> found;
    for (const auto& path : paths) {
        for (auto& identifier : identifiersAt(path)) {
            addBundleToList(identifier);
            found.push_back(std::move(identifier));
        }
    }
    return found;
}

bool ApplicationIgnoreList::needUpdate() const { return m_defaults.boolForKey(ignorelist::kNeedUpdate); }

void ApplicationIgnoreList::setNeedUpdate(bool need) { m_defaults.setBool(ignorelist::kNeedUpdate, need); }

} // namespace sweeply
