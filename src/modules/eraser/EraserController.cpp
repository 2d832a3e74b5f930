#include "modules/eraser/EraserController.h"

#include "appcore/FolderConstants.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"

#include <utility>

namespace sweeply {

EraserController::EraserController(const ModuleServices& services, ScanCoordinator& coordinator,
                                   std::function<bool()> usesSecureErase)
    : ADScanControllerView(services.engine, coordinator), m_eraser(services),
      m_usesSecureErase(std::move(usesSecureErase)) {
    rootNode()->setName(localizedString("Quick Eraser"));
}

void EraserController::analyzeFile(const std::string& path) {
    const std::string item = normalisedPath(m_eraser.folders.expandTilde(path));
    if (!m_eraser.files.attributesOfItemAtPath(item, Links::DontFollow))
        return;
    setCurrentItem(item);
    auto node = Node::nodeWithName(m_eraser.folders.abbreviateWithTilde(item), Icon::ItsOwn, 1,
                                   m_eraser.sizes.measure(item), item, true);
    node->setEvidence(SharedEvidence(EvidenceRule::Named));
    {
        const std::lock_guard lock(services().treeLock);
        if (rootNode()->childWithEqualPath(item))
            return;
        rootNode()->setEnabledWithoutRecalc(true);
    }
    addChildNode(std::move(node));
    incFoundObjectsCount();
}

void EraserController::showDropImageView() {
    {
        const std::lock_guard lock(services().treeLock);
        rootNode()->killChildren();
        rootNode()->setEnabledWithoutRecalc(false);
    }
    refreshInterface();
}

ChangeRequest EraserController::changeFor(const Node& node) const {
    return requestFor(node, m_usesSecureErase() ? Operation::Overwrite : Operation::Remove);
}

} // namespace sweeply
