#include "cli/CleanNotice.h"

#include "cli/Session.h"
#include "formats/DisplayEscapes.h"
#include "platform/Localization.h"
#include "platform/SessionBus.h"
#include "platform/SystemLog.h"

namespace sweeply {

namespace {

void tell(const DesktopNotification& note, SystemLog& log) {
    const auto bus = SessionBus::connect(log);
    if (!bus || !bus->notify(note))
        log.log(note.title + ": " + note.description);
}

} // namespace

void tellHowCleanWent(Session& session, ExitCode outcome, SystemLog& log) {
    auto& application = session.application();
    const auto& target = application.target();
    const auto sums = application.gate().sums();
    const auto size = stringSizeFromLong(sums.freed, application.units());
    DesktopNotification note;
    if (outcome == ExitCode::Done) {
        note = {localizedString("Clean is finished"),
                sums.removed > 0 ? localizedFormat("Sweeply has cleaned %@ from your Mac!", {size})
                                 : localizedString("Your System is clean!"),
                "CLEAN_FINISHED"};
    } else if (outcome == ExitCode::Incomplete) {
        note = {localizedString("Clean process has finished with errors"),
                localizedFormat("Sweeply has cleaned %@ from your Mac! But there were some errors.", {size}), "ERROR"};
    } else {
        note = {localizedString("Clean was not finished"),
                localizedFormat("Sweeply has cleaned %@ from your Mac!", {size}), "ERROR"};
    }
    note.description =
        escapedForDisplay(target.files->rootPath() + " (" + target.folders.userName + ")") + ": " + note.description;
    tell(note, log);
}

void tellThatCleanFailed(const std::string& reason, SystemLog& log) {
    tell({localizedString("Clean was not finished"), escapedForDisplay(reason), "ERROR"}, log);
}

} // namespace sweeply
