#include "modules/ignorelist/ListSharing.h"

#include "modules/ignorelist/ApplicationIgnoreList.h"
#include "modules/ignorelist/IgnoreListPreferences.h"
#include "platform/Alerts.h"
#include "platform/HttpClient.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

namespace sweeply {

ListSharing::ListSharing(UserDefaults& defaults, ApplicationIgnoreList& list, Alerts& alerts, const HttpClient& http,
                         SystemLog& log)
    : m_defaults(defaults), m_list(list), m_alerts(alerts), m_http(http), m_log(log) {}

void ListSharing::askAboutBlackListSharingWithText(const std::string& text) {
    if (m_list.ignoreAppsArray().empty() || m_defaults.boolForKey(ignorelist::kSharingPermissionWasAsked))
        return;
    Alert question;
    question.title = localizedString("Do you want to share your ignore list with other users?");
    question.text = text;
    question.buttons = {localizedButton("Yes"), localizedButton("No")};
    question.safeButton = 1;
    const auto answer = m_alerts.runAlert(question);
    if (answer.nobodyAnswered)
        return;
    m_defaults.setBool(ignorelist::kSharingPermission, answer.button == 0);
    m_defaults.setBool(ignorelist::kSharingPermissionWasAsked, true);
    (void)m_defaults.synchronize(); // a failure is logged by the preferences themselves
}

bool ListSharing::shouldReport() const {
    return m_list.needUpdate() && m_defaults.boolForKey(ignorelist::kSharingPermission);
}

void ListSharing::sendBlackListReport(const std::string& address, const ReportedFacts& facts,
                                      const std::stop_token& stop) {
    const auto reported = m_list.ignoreAppsArray();
    std::string list;
    for (const auto& identifier : reported)
        list += (list.empty() ? "" : "|") + identifier;
    HttpRequest request{.url = address, .agent = facts.applicationName};
    request.headers = {"Brindle-IgnoreLister-reporter: AppName 1.0b"};
    // Who the user is, is nobody's business.
    request.form = {{"user", ""},
                    {"userID", ""},
                    {"appName", facts.applicationName},
                    {"appVer", facts.applicationVersion},
                    {"list", list},
                    {"os", facts.systemVersion}};
    const auto answer = m_http.fetch(request, stop);
    if (!answer)
        m_log.log(answer.error().message());
    else if (m_list.ignoreAppsArray() == reported)
        m_list.setNeedUpdate(false);
}

} // namespace sweeply
