#include "engine/AuthorisationSession.h"

#include "platform/Alerts.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/SystemLog.h"

namespace sweeply {

AuthorisationSession::AuthorisationSession(PrivilegedExecution& privileged, Alerts& alerts, MainThread& mainThread,
                                           SystemLog& log, bool asksNobody)
    : m_privileged(privileged), m_alerts(alerts), m_mainThread(mainThread), m_log(log), m_asksNobody(asksNobody) {}

bool AuthorisationSession::demanded(const std::function<void()>& cancelled) {
    if (m_demandedOnce.exchange(true) || m_privileged.isAuthorised())
        return m_privileged.isAuthorised();
    m_mainThread.runAndWait([&] {
        switch (m_asksNobody ? Choice::Authenticate : prompt()) {
        case Choice::Cancel:
            cancelled();
            break;
        case Choice::Authenticate:
            authentificate();
            break;
        case Choice::Skip:
            break;
        }
    });
    return m_privileged.isAuthorised();
}

AuthorisationSession::Choice AuthorisationSession::prompt() {
    // Skipping is the safe answer: what needs rights stays and is reported.
    const Alert alert{.style = Alert::Style::Informational,
                      .title = localizedString("Some items can only be removed by an administrator"),
                      .text = localizedString("Authenticate to remove them, or skip them and remove the rest."),
                      .buttons = {localizedButton("Authenticate"), localizedButton("Skip"), localizedButton("Cancel")},
                      .safeButton = 1};
    switch (m_alerts.runAlert(alert).button) {
    case 0:
        return Choice::Authenticate;
    case 1:
        return Choice::Skip;
    default:
        return Choice::Cancel;
    }
}

void AuthorisationSession::authentificate() {
    if (m_privileged.isAuthorised()) {
        m_log.log("Authorized. Try to deauthorize");
        if (m_privileged.deauthorize())
            m_lockText.clear();
        else
            m_log.log("Failed to deauthorize");
    } else {
        m_lockText = localizedString("Authorizing...");
        m_privileged.authorize();
        if (m_privileged.isAuthorised()) {
            m_lockText = localizedString("         Authorized"); // the blanks make room for the picture of the lock
        } else {
            m_lockText = localizedString("Permition denied!");
            m_log.log("Failed to authorize");
        }
    }
    m_log.log(formatText("Authorization session finished with authorized = %i", {m_privileged.isAuthorised() ? 1 : 0}));
}

std::string AuthorisationSession::menuItemTitle() const {
    return m_privileged.isAuthorised() ? localizedString("Deauthorize…") : localizedString("Authorize…");
}

} // namespace sweeply
