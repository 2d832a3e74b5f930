#include "cli/PlanWriting.h"

#include "cli/HostFile.h"
#include "cli/Session.h"
#include "engine/plan/PlannedItems.h"
#include "engine/record/RunRecord.h"

#include <ctime>

namespace sweeply {

namespace {

ExistingFile existingFile(const CommandLine& line) {
    return line.replacesPlan ? ExistingFile::IsReplaced : ExistingFile::Stays;
}

ExitCode refuse(const Session& session, const Error& error) {
    if (error.kind != ErrorKind::AlreadyExists) {
        session.complain(error.message());
        return ExitCode::Incomplete;
    }
    session.complain(error.message() + "; --force writes over it");
    return ExitCode::Usage;
}

} // namespace

std::vector<ADScanController*> modulesOf(Session& session) {
    std::vector<ADScanController*> modules;
    for (const auto& row : session.application().scanController().rows()) {
        for (auto* part : row->correspondingScanController()->parts())
            modules.push_back(part);
    }
    for (auto* uninstaller : session.application().extensions().uninstallControllers())
        modules.push_back(uninstaller);
    return modules;
}

PlanTarget planTargetOf(Session& session) {
    const auto& target = session.application().target();
    return {target.files->rootPath(), target.folders.userName, target.version.productVersion(), target.processorFamily};
}

bool canWritePlan(const Session& session) {
    const CommandLine& line = session.commandLine();
    if (!line.planFile)
        return true;
    const auto can = canWriteHostFile(*line.planFile, existingFile(line));
    if (!can)
        (void)refuse(session, can.error());
    return can.has_value();
}

ExitCode writePlan(Session& session, const std::vector<std::string>& arguments) {
    const CommandLine& line = session.commandLine();
    auto& application = session.application();
    Plan plan{timeText(std::time(nullptr)),
              SWEEPLY_VERSION,
              planTargetOf(session),
              line.command == Command::Uninstall ? "uninstall" : "scan",
              arguments,
              !application.target().files->problems().isEmpty(),
              itemsFoundBy(modulesOf(session), application.treeLock())};
    const auto written = planText(plan).and_then(
        [&](const std::string& text) { return writeHostFile(*line.planFile, text, existingFile(line)); });
    if (!written)
        return refuse(session, written.error());
    return ExitCode::Done;
}

} // namespace sweeply
