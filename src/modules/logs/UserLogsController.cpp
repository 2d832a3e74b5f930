#include "modules/logs/UserLogsController.h"

#include "appcore/FolderConstants.h"
#include "modules/logs/LogsController.h"
#include "platform/Localization.h"

namespace sweeply {

UserLogsController::UserLogsController(const ModuleServices& services, LogsController& group)
    : ADScanController(services.engine), m_logs(services), m_group(group) {
    rootNode()->setName(localizedString("User Log Files"));
    rootNode()->setIcon(Icon::UserLogs);
    initUserDefaults();
}

void UserLogsController::scanThread() {
    prepareForScan();
    LogsController::scanLogsInPath(m_logs.folders.HOMELOGSPATH, *this, m_logs);
}

ChangeRequest UserLogsController::changeFor(const Node& node) const {
    return m_group.rotationOf(requestFor(node, Operation::Empty));
}

} // namespace sweeply
