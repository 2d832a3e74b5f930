#include "modules/extensions/PreferencePanesUnistaller.h"

#include "appcore/FolderConstants.h"
#include "appcore/ResourceFinder.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/sizes/DiskSizes.h"
#include "modules/uninstaller/NestedApplications.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"

namespace sweeply {

PreferencePanesUnistaller::PreferencePanesUnistaller(const ModuleServices& services, ScanCoordinator& coordinator,
                                                     Parts parts, ResourceFinder& finder)
    : ADUninstallControllerView(services, coordinator, parts, translatable("PreferencePanesUninstaller")),
      m_finder(finder) {}

bool PreferencePanesUnistaller::isExtensionAtPath(const std::string& path) const {
    return pathExtension(path) == "prefPane";
}

void PreferencePanesUnistaller::rescan() {
    const auto& folders = module().folders;
    for (const auto& folder : {folders.USERPREFERENCEPANESPATH, folders.SYSTEMPREFERENCEPANESPATH})
        scanFolder(normalisedPath(folders.expandTilde(folder)), "prefPane");
}

void PreferencePanesUnistaller::addRecord(const std::string& path) {
    const auto identifier = module().applications.bundleIDForAppWithPath(path).value_or(std::string());
    const bool isOfTheSystem = identifier.find("com.apple") != std::string::npos;
    const auto pane = Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, 0, path, true,
                                         isOfTheSystem ? nodetype::kSystemApplication : std::int8_t{0});
    pane->setNeedExpand(true);
    pane->addChild(Node::nodeWithName(module().folders.abbreviateWithTilde(path), Icon::ItsOwn, 1,
                                      module().sizes.folderSizeAtPath(path), path, true));
    m_finder.findPreferencesForApplication(path, *pane);
    analyzeFile(path, *pane);
    addChildNode(pane);
    incFoundObjectsCount();
}

void PreferencePanesUnistaller::analyzeFile(const std::string& path, Node& node) {
    const auto applications = nestedApplications(module().files, path);
    if (!applications.empty())
        m_finder.findAllResourcesForApplications(applications, node);
}

bool PreferencePanesUnistaller::isRootNodeCleanable(Node& node) {
    if (!steps().confirmsSystemApplication(node) || !steps().stopsApplications(node, *this))
        return false;
    steps().demandRights(node, *this);
    return !stopped();
}

} // namespace sweeply
