#include "modules/extensions/ADUninstallControllerView.h"

#include "appcore/FolderConstants.h"
#include "engine/ScanCoordinator.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"

namespace sweeply {

ADUninstallControllerView::ADUninstallControllerView(const ModuleServices& services, ScanCoordinator& coordinator,
                                                     Parts parts, const char* rootName)
    : ADScanControllerView(services.engine, coordinator), m_module(services), m_parts(parts) {
    rootNode()->setEnabledWithoutRecalc(true);
    rootNode()->setName(localizedString(rootName));
}

void ADUninstallControllerView::scanThread() {
    prepareForScan();
    rescan();
    m_scanned = !stopped();
}

void ADUninstallControllerView::analyzeFile(const std::string& path) {
    const std::string item = normalisedPath(m_module.folders.expandTilde(path));
    if (!isExtensionAtPath(item) || !m_module.files.attributesOfItemAtPath(item, Links::DontFollow))
        return;
    {
        const std::lock_guard lock(services().treeLock);
        rootNode()->setEnabledWithoutRecalc(true);
    }
    setCurrentItem(item);
    addRecord(item);
}

void ADUninstallControllerView::startUninstallation() {
    if (m_parts.question.confirms(*this))
        globalScanController().uninstallWith({this});
}

void ADUninstallControllerView::prepareForClean() {
    ADScanControllerView::prepareForClean();
    m_parts.steps.demandRights(*rootNode(), *this);
}

void ADUninstallControllerView::scanFolder(const std::string& folder, std::string_view extension) {
    const auto entries = m_module.files.contentsOfDirectoryAtPath(folder);
    if (!entries)
        return;
    incTotalProcentageBy(static_cast<std::uint32_t>(entries->size()));
    auto walk = m_module.files.enumeratorAtPath(folder);
    while (const auto entry = walk.next()) {
        if (stopped())
            return;
        if (entry->type == FileType::Directory && pathExtension(entry->path) == extension) {
            walk.skipDescendants();
            std::string path = joinedPath(folder, entry->path);
            setCurrentItem(path);
            addRecord(path);
            updateInterfaceAndWaitUntilDone(false);
        }
        if (entry->level == 0)
            incProgress();
        waitWhilePaused();
    }
}

} // namespace sweeply
