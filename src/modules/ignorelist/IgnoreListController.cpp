#include "modules/ignorelist/IgnoreListController.h"

#include "appcore/SWApplicationCore.h"
#include "formats/DisplayEscapes.h"
#include "modules/ignorelist/IgnoreListPreferences.h"
#include "platform/Alerts.h"
#include "platform/MainThread.h"
#include "platform/TargetPath.h"
#include "platform/UserDefaults.h"

#include <utility>

namespace sweeply {

namespace {

Alert question(std::string title, std::string text) {
    Alert alert;
    alert.style = Alert::Style::Informational;
    alert.title = std::move(title);
    alert.text = std::move(text);
    alert.buttons = {localizedButton("Yes"), localizedButton("No")};
    alert.safeButton = 1;
    return alert;
}

Alert message(std::string title, std::string text) {
    Alert alert;
    alert.style = Alert::Style::Informational;
    alert.title = std::move(title);
    alert.text = std::move(text);
    alert.buttons = {localizedButton("Ok")};
    return alert;
}

std::string textFor(UpdateOutcome outcome) {
    switch (outcome) {
    case UpdateOutcome::Installed:
        return localizedString("The latest version of the Shared Ignore List has been successfully installed.");
    case UpdateOutcome::AlreadyLatest:
        return localizedString("You already have the latest version of the Shared Ignore List.");
    case UpdateOutcome::Error:
        break;
    }
    return localizedString(
        "An error occurred while checking for an update, please make sure you have constant Internet "
        "connection or try again later.");
}

} // namespace

IgnoreListController::IgnoreListController(IgnoreListServices services)
    : m_services(std::move(services)), m_uncheckedItems(m_services.defaults, m_services.applications, m_services.log),
      m_applicationList(m_services.defaults, m_services.files, m_services.applications),
      m_sharedList(m_services.files, m_services.shippedFile, m_services.installedFile, m_services.log),
      m_updater(m_sharedList, m_services.http, m_services.tools, m_services.log),
      m_sharing(m_services.defaults, m_applicationList, m_services.alerts, m_services.http, m_services.log) {}

IgnoreListController::~IgnoreListController() = default;

void IgnoreListController::load() {
    registerDefaults(m_services.defaults, ignorelist::kPreferences);
    if (!m_services.defaults.objectForKey(ignorelist::kNeedUpdate))
        m_applicationList.setNeedUpdate(!m_applicationList.ignoreAppsArray().empty());
    m_sharedList.load();
}

void IgnoreListController::startInBackground() {
    m_sharing.askAboutBlackListSharingWithText(
        localizedString("There are some applications in your Ignore List that would help us improve Sweeply. Would you "
                        "like to share your ignore list with Brindle?"));
    if (m_services.defaults.boolForKey(ignorelist::kAutoUpdate))
        checkBlacklistForUpdate([](const UpdateReport&) {});
    if (m_sharing.shouldReport())
        m_reportThread = std::jthread([this](const std::stop_token& stop) {
            m_sharing.sendBlackListReport(m_services.servers.reportAddress, m_services.servers.facts, stop);
        });
}

std::vector<std::string> IgnoreListController::ignoreListForController(std::string_view moduleKey) const {
    return m_uncheckedItems.ignoreListForController(moduleKey);
}

void IgnoreListController::addToIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view moduleKey) {
    m_uncheckedItems.addToIgnoreListNodes(nodes, moduleKey);
}

void IgnoreListController::removeFromIgnoreListNodes(const std::vector<const Node*>& nodes,
                                                     std::string_view moduleKey) {
    m_uncheckedItems.removeFromIgnoreListNodes(nodes, moduleKey);
}

bool IgnoreListController::applicationInList(std::string_view path) const {
    const auto identifier = m_services.applications.bundleIDForAppWithPath(path);
    return identifier && bundleInList(*identifier);
}

bool IgnoreListController::applicationInListWithUserNotification(std::string_view path) {
    if (!applicationInList(path))
        return false;
    bool goesAhead = false;
    m_services.mainThread.runAndWait([&] {
        const auto answer = m_services.alerts.runAlert(
            question(localizedFormat("%@ is in the ignore list", {escapedForDisplay(nameWithoutExtension(path))}),
                     localizedString("Are you sure you want to slim it?")));
        goesAhead = answer.button == 0;
    });
    return !goesAhead;
}

bool IgnoreListController::bundleInList(std::string_view identifier) const {
    return bundleInGlobalList(identifier) || bundleInLocalList(identifier);
}

bool IgnoreListController::bundleInLocalList(std::string_view identifier) const {
    return m_applicationList.contains(identifier);
}

bool IgnoreListController::bundleInGlobalList(std::string_view identifier) const {
    return m_sharedList.contains(identifier);
}

std::vector<std::string> IgnoreListController::receiveDragData(const std::vector<std::string>& paths) {
    auto found = m_applicationList.addFilesToIgnoreList(paths);
    m_sharing.askAboutBlackListSharingWithText(localizedString(
        "Sweeply allows you to send your ignore list to Brindle to identify and fix cleaning related problems."));
    return found;
}

void IgnoreListController::checkBlacklistForUpdate(std::function<void(const UpdateReport&)> finished) {
    if (std::exchange(m_isUpdating, true))
        return;
    m_updateThread = std::jthread([this, finished = std::move(finished)](const std::stop_token& stop) {
        const auto report = m_updater.update(m_services.servers.feedAddress, m_services.servers.agent, stop);
        if (report.outcome != UpdateOutcome::Error)
            rememberTimeOfCheck();
        m_services.mainThread.runLater([this, isAlive = std::weak_ptr<const bool>(m_isAlive), finished, report] {
            if (isAlive.expired())
                return;
            m_isUpdating = false;
            finished(report);
        });
    });
}

void IgnoreListController::rememberTimeOfCheck() {
    m_services.defaults.setString(ignorelist::kAutoUpdateLastDate, m_services.now());
    (void)m_services.defaults.synchronize(); // a failure is logged by the preferences themselves
}

void IgnoreListController::updateButtonClick(std::function<void(const UpdateReport&)> finished) {
    checkBlacklistForUpdate([this, finished = std::move(finished)](const UpdateReport& report) {
        showOutcome(report);
        finished(report);
    });
}

void IgnoreListController::showOutcome(const UpdateReport& report) {
    const std::string title = localizedString("Ignore list update");
    if (!report.downloadError.empty())
        m_services.alerts.runAlert(
            message(title, localizedFormat("An error occurred while downloading this ignore list: %@.",
                                           {report.downloadError})));
    else
        m_services.alerts.runAlert(message(title, textFor(report.outcome)));
}

void IgnoreListController::askAboutBlacklistAutometicUpdatePermisionWithText(const std::string& text) {
    const auto answer = m_services.alerts.runAlert(question(text, {}));
    if (!answer.nobodyAnswered)
        m_services.defaults.setBool(ignorelist::kAutoUpdate, answer.button == 0);
}

} // namespace sweeply
