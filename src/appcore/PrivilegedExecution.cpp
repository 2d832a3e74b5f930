#include "appcore/PrivilegedExecution.h"

#include "platform/Authorization.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/ToolTable.h"

namespace sweeply {

void PrivilegedExecution::authorize() {
    m_authorized = false;
    if (const auto created = m_service.create(); !created) {
        m_log.log(formatText("Authorized Failed: error %i ", {created.error().status}));
        return;
    }
    m_hasReference = true;
    m_log.log("Authorization created. Will try to copy rights");
    copyRights();
}

void PrivilegedExecution::copyRights() {
    if (const auto copied = m_service.copyRights(); !copied) {
        m_log.log(formatText("Failed to copy rights %i", {copied.error().status}));
        if (!copied.error().reason.empty())
            m_log.log(copied.error().reason);
        deauthorize();
        return;
    }
    m_log.log("Copy rights success");
    m_authorized = true;
}

bool PrivilegedExecution::deauthorize() {
    if (!m_hasReference)
        return false;
    m_service.giveBack();
    m_hasReference = false;
    m_authorized = false;
    return true;
}

Result<int> PrivilegedExecution::statusOfCommandWithPrivilidges(const std::string& tool,
                                                                const std::vector<std::string>& arguments,
                                                                int workingDirectory) {
    auto status = m_tools.programFor(tool).and_then(
        [&](const std::string& program) { return m_service.run(program, arguments, workingDirectory); });
    if (!status)
        m_log.log(status.error().message());
    return status;
}

bool PrivilegedExecution::executeCommandWithPrivilidges(const std::string& tool,
                                                        const std::vector<std::string>& arguments,
                                                        int workingDirectory) {
    return statusOfCommandWithPrivilidges(tool, arguments, workingDirectory).has_value();
}

} // namespace sweeply
