#include "modules/extensions/PreferencePanesUnistaller.h"

#include "appcore/FolderConstants.h"
#include "appcore/ResourceFinder.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/sizes/DiskSizes.h"
#include "modules/uninstaller/NestedApplications.h"
#include "modules/uninstaller/Ownership.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"

namespace sweeply {

PreferencePanesUnistaller::PreferencePanesUnistaller(const ModuleServices& services, ScanCoordinator& coordinator,
                                                     Parts parts, ResourceFinder& finder, const Ownership& ownership)
    : ADUninstallControllerView(services, coordinator, parts, translatable("PreferencePanesUninstaller")),
      m_finder(finder), m_ownership(ownership) {}

bool PreferencePanesUnistaller::isExtensionAtPath(const std::string& path) const {
    return pathExtension(path) == "prefPane";
}

void PreferencePanesUnistaller::rescan() {
    const auto listings = m_finder.keepListings();
    const auto& folders = module().folders;
    for (const auto& folder : {folders.USERPREFERENCEPANESPATH, folders.SYSTEMPREFERENCEPANESPATH})
        scanFolder(normalisedPath(folders.expandTilde(folder)), "prefPane");
}

void PreferencePanesUnistaller::addRecord(const std::string& path) {
    const auto identifier = module().applications.bundleIDForAppWithPath(path).value_or(std::string());
    const auto claims = m_ownership.claimsOn({path, identifier, {}}, this);
    if (!claims)
        return;
    const bool isOfTheSystem = identifier.find("com.apple") != std::string::npos;
    const auto pane = Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, 0, path, true,
                                         isOfTheSystem ? nodetype::kSystemApplication : std::int8_t{0});
    const auto contents = contentsOfBundle(module().sizes, path);
    const auto bundle =
        Node::nodeWithName(module().folders.abbreviateWithTilde(path), Icon::ItsOwn, 1, contents.measured, path, true);
    const SharedEvidence evidence(EvidenceRule::Extension, identifier);
    pane->setEvidence(evidence);
    bundle->setEvidence(evidence);
    pane->setNeedExpand(true);
    pane->addChild(bundle);
    m_finder.findPreferencesForApplication(path, *pane, {*claims, m_ownership.checksWeakMatches()});
    if (!contents.applications.empty())
        m_finder.findAllResourcesForApplications(contents.applications, *pane,
                                                 {*claims, m_ownership.checksWeakMatches()});
    addChildNode(pane);
    incFoundObjectsCount();
}

bool PreferencePanesUnistaller::isRootNodeCleanable(Node& node) {
    if (!steps().confirmsSystemApplication(node, *this) || !steps().stopsApplications(node, *this))
        return false;
    steps().demandRights(node, *this);
    return !stopped();
}

} // namespace sweeply
