#include "modules/extensions/PluginsUninstaller.h"

#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/ResourceFinder.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"
#include "platform/Workspace.h"

#include <algorithm>
#include <array>

namespace sweeply {

namespace {

constexpr std::array<std::string_view, 14> pluginExtensions{
    "plugin",     "webplugin", "component",  "bundle",  "mdimporter", "qlgenerator", "saver",
    "dictionary", "dict",      "mailbundle", "service", "workflow",   "growlTicket", "osax"};

bool isOfStartup(const PluginCategory& category) { return category.displayName == kStartupItems; }

} // namespace

PluginsUninstaller::PluginsUninstaller(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts,
                                       const LoginItems& loginItems, const Workspace& workspace)
    : ADUninstallControllerView(services, coordinator, parts, translatable("PluginsUninstaller")),
      m_loginItems(loginItems), m_workspace(workspace), m_categories(findAllPlugins(services.folders)) {}

bool PluginsUninstaller::isPlugin(const PluginCategory& category, const std::string& path) const {
    const auto extension = pathExtension(path);
    return std::ranges::find(pluginExtensions, extension) != pluginExtensions.end() ||
           (isOfStartup(category) && extension == "plist") || m_workspace.isFilePackageAtPath(path);
}

const PluginCategory* PluginsUninstaller::categoryOfPath(const std::string& path) const {
    const auto found = std::ranges::find_if(m_categories, [&](const PluginCategory& category) {
        auto folders = systemFolders(category);
        std::ranges::move(userFolders(category, module().folders), std::back_inserter(folders));
        return std::ranges::any_of(folders, [&](const auto& folder) { return path.starts_with(folder + "/"); });
    });
    return found == m_categories.end() ? nullptr : &*found;
}

bool PluginsUninstaller::isExtensionAtPath(const std::string& path) const {
    const auto* category = categoryOfPath(path);
    return category && isPlugin(*category, path);
}

void PluginsUninstaller::rescan() {
    incTotalProcentageBy(static_cast<std::uint32_t>(m_categories.size()) + 1);
    for (const auto& category : m_categories) {
        for (const auto& folder : systemFolders(category))
            scanCategoryFolder(category, folder);
        for (const auto& folder : userFolders(category, module().folders))
            scanCategoryFolder(category, folder);
        if (stopped())
            return;
        incProgress();
    }
    scanForLoginItems();
    incProgress();
}

void PluginsUninstaller::scanCategoryFolder(const PluginCategory& category, const std::string& folder) {
    auto walk = module().files.enumeratorAtPath(folder);
    while (const auto entry = walk.next()) {
        if (stopped())
            return;
        std::string path = joinedPath(folder, entry->path);
        if (isPlugin(category, path)) {
            walk.skipDescendants();
            addPlugin(path, category);
        }
        waitWhilePaused();
    }
}

void PluginsUninstaller::addRecord(const std::string& path) {
    if (const auto* category = categoryOfPath(path))
        addPlugin(path, *category);
}

void PluginsUninstaller::addPlugin(const std::string& path, const PluginCategory& category) {
    setCurrentItem(path);
    const std::int8_t type = isOfStartup(category) ? nodetype::kLaunchItem : std::int8_t{0};
    addTo(category, Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, module().sizes.measure(path), path,
                                       true, type));
    incFoundObjectsCount();
    updateInterfaceAndWaitUntilDone(false);
}

void PluginsUninstaller::scanForLoginItems() {
    const auto startup = std::ranges::find(m_categories, kStartupItems, &PluginCategory::displayName);
    for (const auto& item : m_loginItems.loginItemsList()) {
        const std::string path = LoginItems::pathOf(item);
        if (path.empty())
            continue;
        const auto name = module().applications.appNameForAppWithPath(path);
        addTo(*startup, Node::nodeWithName(name.value_or(std::string(nameWithoutExtension(path))), Icon::ItsOwn, 0, 0,
                                           path, true, nodetype::kLoginItem));
        incFoundObjectsCount();
    }
}

void PluginsUninstaller::addTo(const PluginCategory& category, Node::Pointer child) {
    const std::string name = localizedString(category.displayName);
    const std::lock_guard lock(services().treeLock);
    auto node = rootNode()->childWithEqualName(name);
    if (!node) {
        node = Node::nodeWithName(name, category.icon, 0, 0, {}, true);
        node->setNeedExpand(true);
        rootNode()->addChild(node);
    }
    child->setEvidence(SharedEvidence(EvidenceRule::Extension));
    node->addChild(std::move(child));
}

} // namespace sweeply
