#include "appcore/ResourceFinder.h"

#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/StringExtras.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <map>
#include <unordered_set>

namespace sweeply {

namespace {

/// An identifier of fewer parts, such as "com", is part of too many names to say whose a file is.
constexpr std::ptrdiff_t kFewestPoints = 2;

bool tellsApplicationsApart(std::string_view identifier) {
    return std::ranges::count(identifier, '.') >= kFewestPoints && identifier.find("..") == std::string_view::npos &&
           !identifier.starts_with('.') && !identifier.ends_with('.');
}

} // namespace

ResourceFinder::Paths ResourceFinder::findFile(std::string_view term, const std::string& folder, bool byWords,
                                               bool recursive) const {
    Paths found;
    if (trimWhiteSpace(term).empty() || folder.empty())
        return found;
    auto walk = m_services.files.enumeratorAtPath(folder);
    while (const auto entry = walk.next()) {
        if (!recursive)
            walk.skipDescendants();
        const bool isMatch =
            byWords
                ? compareByWords(term, stringByDeletingRealPathExtension(entry->path, folder, m_services.files)) == 0
                : entry->path.find(term) != std::string::npos;
        if (isMatch)
            found.push_back(joinedPath(folder, entry->path));
    }
    return found;
}

bool ResourceFinder::isSystemFileAtPath(std::string_view path) {
    return path.find("/System/Library") != std::string_view::npos;
}

ResourceFinder::Terms ResourceFinder::termsOf(const std::string& path) const {
    return {m_services.applications.bundleIDForAppWithPath(path).value_or(std::string()),
            m_services.applications.appNameForAppWithPath(path).value_or(std::string())};
}

void ResourceFinder::findAllResourcesForApplications(const Paths& paths, Node& node) {
    constexpr Finder kFinders[] = {
        &ResourceFinder::findPreferences,      &ResourceFinder::findApplicationSupport,
        &ResourceFinder::findLoginItems,       &ResourceFinder::findPlugins,
        &ResourceFinder::findCaches,           &ResourceFinder::findLogs,
        &ResourceFinder::findLibraryPaths,     &ResourceFinder::findPDFServices,
        &ResourceFinder::findReceiptResources, &ResourceFinder::findLaunchItems,
        &ResourceFinder::findGrowlTickets,
    };
    std::vector<std::pair<std::string, Terms>> applications;
    for (const auto& path : paths) {
        std::string whole = m_services.folders.expandTilde(path);
        auto terms = termsOf(whole);
        applications.emplace_back(std::move(whole), std::move(terms));
    }
    for (const auto finder : kFinders) {
        for (const auto& [path, terms] : applications)
            (this->*finder)(path, terms, node);
    }
}

void ResourceFinder::add(const Paths& found, Node& node, Icon icon, std::int8_t type) {
    std::unordered_set<std::string_view> added;
    for (const auto& path : found) {
        // A folder that everybody uses belongs to nobody, whatever it is called.
        if (!added.insert(path).second || !m_services.files.removals().guard().reasonAgainst(path).empty())
            continue;
        const std::uint64_t size = m_services.sizes.folderSizeAtPath(path);
        const std::lock_guard lock(m_treeLock);
        node.addUniqueChild(Node::nodeWithName(m_services.folders.abbreviateWithTilde(path), icon, 1, size, path,
                                               node.ifEnabled(), type));
    }
}

ResourceFinder::Paths ResourceFinder::withIdentifier(const Terms& terms, const std::string& folder) const {
    if (tellsApplicationsApart(terms.identifier))
        return findFile(terms.identifier, folder, false, false);
    Paths exact;
    for (auto& path : findFile(terms.identifier, folder, false, false)) {
        const auto name = lastPathComponent(path);
        if (name == terms.identifier || name == terms.identifier + ".plist")
            exact.push_back(std::move(path));
    }
    return exact;
}

void ResourceFinder::findInFolders(const Paths& folders, const Terms& terms, Node& node) {
    for (const auto& folder : folders) {
        auto found = withIdentifier(terms, folder);
        const auto byName = findFile(terms.name, folder, true, false);
        found.insert(found.end(), byName.begin(), byName.end());
        add(found, node, Icon::Preferences);
    }
}

ResourceFinder::Paths ResourceFinder::libraryFolders() const {
    return {joinedPath(m_services.folders.home, "Library"), "/Library"};
}

void ResourceFinder::findPreferences(const std::string&, const Terms& terms, Node& node) {
    findInFolders(m_services.applications.preferencesPaths(), terms, node);
}

void ResourceFinder::findApplicationSupport(const std::string&, const Terms& terms, Node& node) {
    findInFolders(m_services.applications.applicationSupportPaths(), terms, node);
}

void ResourceFinder::findLibraryPaths(const std::string&, const Terms& terms, Node& node) {
    findInFolders(libraryFolders(), terms, node);
}

void ResourceFinder::findCaches(const std::string&, const Terms& terms, Node& node) {
    findInFolders({normalisedPath(m_services.folders.expandTilde(m_services.folders.HOMECACHESPATH))}, terms, node);
}

void ResourceFinder::findLogs(const std::string&, const Terms& terms, Node& node) {
    const Paths folders{normalisedPath(m_services.folders.expandTilde(m_services.folders.HOMELOGSPATH)),
                        normalisedPath(m_services.folders.expandTilde(m_services.folders.LIBRARYLOGSPATH))};
    for (const auto& folder : folders)
        add(withIdentifier(terms, folder), node, Icon::Preferences);
    for (const auto& folder : folders)
        add(findFile(terms.name, folder, true, false), node, Icon::Preferences);
}

void ResourceFinder::findPDFServices(const std::string&, const Terms& terms, Node& node) {
    for (const auto& folder : libraryFolders())
        add(findFile(terms.name, joinedPath(folder, "PDF Services"), true, false), node, Icon::ItsOwn);
}

void ResourceFinder::findLaunchItems(const std::string&, const Terms& terms, Node& node) {
    for (const auto& folder : libraryFolders()) {
        for (const char* kind : {"LaunchDaemons", "LaunchAgents", "PrivilegedHelperTools"})
            add(withIdentifier(terms, joinedPath(folder, kind)), node, Icon::ItsOwn, nodetype::kLaunchItem);
    }
}

void ResourceFinder::findGrowlTickets(const std::string&, const Terms& terms, Node& node) {
    for (const auto& folder : m_services.applications.applicationSupportPaths())
        add(findFile(terms.name, joinedPath(folder, "Growl/Tickets"), false, false), node, Icon::ItsOwn);
}

ResourceFinder::Paths ResourceFinder::originalPluginsForApplication(const std::string& path) const {
    const auto& extensions = SWApplicationCore::pluginExtensions();
    Paths names;
    auto walk = m_services.files.enumeratorAtPath(path);
    while (const auto entry = walk.next()) {
        if (std::ranges::find(extensions, pathExtension(entry->path)) != extensions.end())
            names.emplace_back(lastPathComponent(entry->path));
    }
    return names;
}

void ResourceFinder::findPlugins(const std::string& path, const Terms&, Node& node) {
    const auto originals = originalPluginsForApplication(path);
    if (originals.empty())
        return;
    const std::unordered_set<std::string_view> wanted(originals.begin(), originals.end());
    for (const auto& folder : m_services.applications.pluginsPaths()) {
        // The first of each name, in the order of the bundle. One walk serves all names.
        std::map<std::string, std::string, std::less<>> first;
        auto walk = m_services.files.enumeratorAtPath(folder);
        while (const auto entry = walk.next()) {
            const auto name = lastPathComponent(entry->path);
            if (wanted.contains(name))
                first.try_emplace(std::string(name), joinedPath(normalisedPath(folder), entry->path));
        }
        for (const auto& original : originals) {
            if (const auto found = first.find(original); found != first.end())
                add({found->second}, node, Icon::ItsOwn);
        }
    }
}

void ResourceFinder::findLoginItems(const std::string& path, const Terms&, Node& node) {
    for (const auto& item : m_services.loginItems.loginItemsList()) {
        if (LoginItems::pathOf(item) != path)
            continue;
        const std::lock_guard lock(m_treeLock);
        node.addChild(Node::nodeWithName(localizedString("Startup Item"), Icon::StartupItem, 1, 0, path,
                                         node.ifEnabled(), nodetype::kLoginItem));
    }
}

void ResourceFinder::findReceiptResources(const std::string& path, const Terms& terms, Node& node) {
    if (!PackageManager::isNormalAppleApplication(terms.identifier))
        return;
    if (terms.name.empty()) {
        m_services.log.log(formatText("Failed to get app name for %@", {path}));
        return;
    }
    auto packages = m_services.packages.findPackageByAppName(formatText("%@.app", {terms.name}));
    if (packages.empty())
        packages = m_services.packages.findPackageByAppName(std::string(lastPathComponent(path)));
    for (const auto& package : packages) {
        if (!m_services.packages.doesPackageBelongToAppWithPath(path, package))
            continue;
        // A package of several applications owns the others' files as well.
        Paths files;
        for (const auto& entry : m_services.packages.getPackageDependencies(package, true)) {
            const bool isReceipt = entry.find(kReceiptEntry) != std::string::npos;
            if (!isReceipt && !isSystemFileAtPath(entry) && (!package.isMultiApp() || entry == path) &&
                m_services.files.attributesOfItemAtPath(entry, Links::DontFollow))
                files.push_back(entry);
        }
        add(files, node, Icon::Package);
        const std::int8_t type = package.isMultiApp() ? nodetype::kSharedPackage : std::int8_t{0};
        if (m_services.packages.hasDatabase()) {
            const std::string name = std::string(kReceiptEntry) + package.name;
            const std::lock_guard lock(m_treeLock);
            node.addUniqueChild(Node::nodeWithName(name, Icon::Package, 1, 0, package.name, node.ifEnabled(), type));
        } else if (!package.path.empty()) {
            add({package.path}, node, Icon::Package, type);
        }
    }
}

} // namespace sweeply
