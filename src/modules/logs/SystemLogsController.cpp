#include "modules/logs/SystemLogsController.h"

#include "appcore/FolderConstants.h"
#include "modules/logs/LogsController.h"
#include "platform/Localization.h"

namespace sweeply {

SystemLogsController::SystemLogsController(const ModuleServices& services, LogsController& group)
    : ADScanController(services.engine), m_logs(services), m_group(group) {
    rootNode()->setName(localizedString("System Log Files"));
    rootNode()->setIcon(Icon::SystemLogs);
    initUserDefaults();
}

void SystemLogsController::scanThread() {
    prepareForScan();
    LogsController::scanLogsInPath(m_logs.folders.LIBRARYLOGSPATH, *this, m_logs);
}

ChangeRequest SystemLogsController::changeFor(const Node& node) const {
    return m_group.rotationOf(requestFor(node, Operation::Empty));
}

} // namespace sweeply
