#include "modules/extensions/WidgetsUninstaller.h"

#include "appcore/FolderConstants.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"

namespace sweeply {

WidgetsUninstaller::WidgetsUninstaller(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts)
    : ADUninstallControllerView(services, coordinator, parts, translatable("WidgetsUninstaller")) {}

bool WidgetsUninstaller::isExtensionAtPath(const std::string& path) const { return pathExtension(path) == "wdgt"; }

void WidgetsUninstaller::rescan() {
    scanFolder(normalisedPath(module().folders.expandTilde(module().folders.USERWIDGETSPATH)), "wdgt");
}

void WidgetsUninstaller::addRecord(const std::string& path) {
    auto widget =
        Node::nodeWithName(nameWithoutExtension(path), Icon::ItsOwn, 0, module().sizes.measure(path), path, true);
    widget->setEvidence(SharedEvidence(EvidenceRule::Extension));
    addChildNode(std::move(widget));
    incFoundObjectsCount();
}

} // namespace sweeply
