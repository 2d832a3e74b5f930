#include "engine/RunReports.h"

#include "platform/Alerts.h"
#include "platform/Localization.h"

namespace sweeply {

void RunReports::warn(std::string_view title, std::string_view text) {
    m_alerts.runAlert({.style = Alert::Style::Warning,
                       .title = localizedString(title),
                       .text = text.empty() ? std::string() : localizedString(text),
                       .buttons = {localizedButton("Ok")}});
}

void RunReports::nothingToScan() {
    warn(translatable("There is nothing to scan"), translatable("Please check at least one object to scan!"));
}

void RunReports::systemIsClean() { warn(translatable("Your System is clean!"), {}); }

void RunReports::nothingToClean() {
    warn(translatable("There is nothing to clean"), translatable("Please check at least one object to clean!"));
}

void RunReports::nothingToUninstall() {
    warn(translatable("There is nothing to uninstall"), translatable("Please check at least one object to uninstall!"));
}

bool RunReports::confirmsStop(std::string_view title, std::string_view text) {
    const AlertAnswer answer = m_alerts.runAlert({.style = Alert::Style::Informational,
                                                  .title = localizedString(title),
                                                  .text = localizedString(text),
                                                  .buttons = {localizedButton("Cancel"), localizedButton("Stop Now")}});
    return answer.button == 1;
}

bool RunReports::confirmsStoppingScan() {
    return confirmsStop(translatable("Are you sure you want to stop the Scan now?"),
                        translatable("It is recommended to finish the scan for best results."));
}

void RunReports::notify(std::string_view title, std::string_view format, std::uint64_t bytes, const char* name) {
    if (m_notifications.isApplicationActive())
        return;
    m_notifications.show({.title = localizedString(title),
                          .description = localizedFormat(format, {stringSizeFromLong(bytes, m_units)}),
                          .name = name});
}

void RunReports::scanIsFinished(std::uint64_t foundSize) {
    notify(translatable("Scan is finished"), translatable("Sweeply can clean %@ from your Mac!"), foundSize,
           "SCAN_FINISHED");
}

void RunReports::cleanIsFinished(std::uint64_t removedSize, bool couldntRemoveSomething) {
    if (!couldntRemoveSomething) {
        notify(translatable("Clean is finished"), translatable("Sweeply has cleaned %@ from your Mac!"), removedSize,
               "CLEAN_FINISHED");
        return;
    }
    notify(translatable("Clean process has finished with errors"),
           translatable("Sweeply has cleaned %@ from your Mac! But there were some errors."), removedSize, "ERROR");
    someFilesStayed();
}

void RunReports::uninstallationIsFinished(bool couldntRemoveSomething) {
    if (couldntRemoveSomething)
        someFilesStayed();
}

void RunReports::someFilesStayed() {
    warn(translatable("Sweeply could not remove some files"),
         translatable(
             "Please try cleaning in authorized mode!\nClick on the lock below to enter your user name and password."));
}

void RunReports::requestUserAttention() { m_notifications.requestUserAttention(); }

} // namespace sweeply
