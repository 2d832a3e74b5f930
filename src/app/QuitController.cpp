#include "app/QuitController.h"

#include "engine/ScanController.h"
#include "platform/Alerts.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"

#include <utility>

namespace sweeply {

namespace {

Alert quitAlert(std::string text) {
    Alert alert;
    alert.title = localizedString("Quit Sweeply?");
    alert.text = std::move(text);
    alert.buttons = {localizedButton("Cancel"), localizedButton("Quit")};
    return alert;
}

} // namespace

QuitController::QuitController(ScanController& controller, Alerts& alerts, SystemLog& log, Window window)
    : m_controller(controller), m_alerts(alerts), m_log(log), m_window(std::move(window)) {}

bool QuitController::isRunning() const { return m_controller.isScanning() || m_controller.isRemoving(); }

bool QuitController::applicationShouldTerminate() {
    if (!isRunning())
        return quitWhileIdle();
    // A run that the person has paused already stays so afterwards.
    const bool wasPaused = m_controller.isPaused();
    if (!wasPaused)
        m_controller.pauseScan();
    switch (askWhileRunning()) {
    case Answer::Quit:
        return quitApplicationButtonPress();
    case Answer::ForceQuit:
        m_window.killOurselves();
        return true;
    case Answer::Cancel:
        break;
    }
    return cancesQuitButtonPress(wasPaused);
}

bool QuitController::quitWhileIdle() {
    if (!m_terminating && !m_window.isShowingScanView() &&
        m_alerts.runAlert(quitAlert(localizedString("Are you sure you want to quit Sweeply?"))).button == 0)
        return false;
    m_window.beforeQuitting();
    m_log.log("Sweeply terminated");
    return true;
}

QuitController::Answer QuitController::askWhileRunning() {
    if (!m_forceQuit) {
        const auto text = m_controller.isScanning()
                              ? localizedString("Scan is in proccess.\n Do you really want to quit?")
                              : localizedString("Remove is in proccess.\n Do you really want to quit?");
        return m_alerts.runAlert(quitAlert(text)).button == 0 ? Answer::Cancel : Answer::Quit;
    }
    Alert alert = quitAlert(
        localizedString("Sweeply failed to quit normally last time. Some processes are still running and it's better "
                        "to wait until they're done. Would you like to force quit?"));
    alert.buttons.push_back(localizedButton("Force Quit"));
    switch (m_alerts.runAlert(alert).button) {
    case 0:
        return Answer::Cancel;
    case 1:
        return Answer::Quit;
    default:
        return Answer::ForceQuit;
    }
}

bool QuitController::quitApplicationButtonPress() {
    m_forceQuit = true;
    m_terminating = true;
    m_controller.setTerminating(true);
    m_controller.stopScanActually(); // also wakes workers that rest
    return true;
}

bool QuitController::cancesQuitButtonPress(bool wasPaused) {
    if (isRunning() && !wasPaused)
        m_controller.pauseScan();
    return false;
}

} // namespace sweeply
