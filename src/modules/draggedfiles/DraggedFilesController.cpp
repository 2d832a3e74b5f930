#include "modules/draggedfiles/DraggedFilesController.h"

#include "modules/extensions/ExtensionsScanController.h"

#include <map>

namespace sweeply {

void DraggedFilesController::addFileToListWithPath(const std::string& path) {
    m_records.push_back(path);
    if (m_view)
        m_view->reloadData();
}

void DraggedFilesController::showFileList() {
    if (m_view)
        m_view->showSheet();
}

void DraggedFilesController::uninstallApps() {
    if (m_view)
        m_view->endSheet();
    std::map<ADScanControllerView*, std::vector<std::string>> pathsByModule;
    for (const auto& path : m_records) {
        auto* uninstaller = m_destinations.extensions.uninstallControllerFor(path);
        pathsByModule[uninstaller ? static_cast<ADScanControllerView*>(uninstaller)
                                  : &m_destinations.applicationUninstaller]
            .push_back(path);
    }
    const bool areOnlyExtensions = !pathsByModule.contains(&m_destinations.applicationUninstaller);
    (areOnlyExtensions && !m_records.empty() ? static_cast<ADScanControllerView&>(m_destinations.extensions)
                                             : m_destinations.applicationUninstaller)
        .activate();
    for (const auto& [module, paths] : pathsByModule)
        module->receiveDragData(paths);
    finishProcessingDraggedFiles();
}

void DraggedFilesController::slimApps() {
    if (m_view)
        m_view->endSheet();
    m_destinations.languages.activate();
    for (auto* module : {&m_destinations.languages, &m_destinations.universalBinaries, &m_destinations.devJunk})
        module->receiveDragData(m_records);
    finishProcessingDraggedFiles();
}

void DraggedFilesController::quickRemove() {
    if (m_view)
        m_view->endSheet();
    m_destinations.eraser.activate();
    m_destinations.eraser.receiveDragData(m_records);
    finishProcessingDraggedFiles();
}

void DraggedFilesController::close() {
    if (m_view)
        m_view->endSheet();
    finishProcessingDraggedFiles();
}

void DraggedFilesController::removeRecords() {
    m_records.clear();
    if (m_view)
        m_view->reloadData();
}

void DraggedFilesController::finishProcessingDraggedFiles() {
    removeRecords();
    m_finished();
}

} // namespace sweeply
