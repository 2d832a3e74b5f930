#include "modules/logs/LogsController.h"

#include "appcore/FolderConstants.h"
#include "engine/ScanCoordinator.h"
#include "modules/FolderEntries.h"
#include "modules/logs/SystemLogsController.h"
#include "modules/logs/UserLogsController.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

namespace sweeply {

namespace {

/// Charged bytes below which a log is not worth showing.
constexpr std::uint64_t kSmallestLog = 10'240;

bool isReportersFolder(const std::string& path) {
    const auto name = lastPathComponent(path);
    return name == "CrashReporter" || name == "HangReporter";
}

} // namespace

LogsController::LogsController(const ModuleServices& services, ScanCoordinator& coordinator)
    : ADGroupScanController(services.engine, coordinator), m_files(services.files) {
    rootNode()->setName(localizedString("Logs"));
    addScanController(std::make_unique<UserLogsController>(services, *this));
    addScanController(std::make_unique<SystemLogsController>(services, *this));
}

void LogsController::scanLogsInPath(const std::string& path, ADScanController& module, const ModuleServices& services) {
    scanEntriesOfFolder(services.folders.expandTilde(path), module, services,
                        {kModuleKey, EvidenceRule::LogSize, kSmallestLog, false});
}

ChangeRequest LogsController::rotationOf(ChangeRequest request) const {
    request.kind = ChangedKind::Log;
    const auto attributes = m_files.attributesOfItemAtPath(request.path, Links::DontFollow);
    if (!attributes || attributes->type != FileType::Directory)
        return request;
    request.hasParts = true;
    if (!isReportersFolder(request.path)) {
        addFilesBelow(request);
        return request;
    }
    request.operation = Operation::Remove;
    const auto entries = m_files.contentsOfDirectoryAtPath(request.path);
    if (!entries)
        request.obstacle = entries.error();
    for (const auto& entry : entries.value_or(std::vector<DirectoryEntry>()))
        request.parts.push_back(joinedPath(request.path, entry.name));
    return request;
}

void LogsController::addFilesBelow(ChangeRequest& request) const {
    auto walk = m_files.enumeratorAtPath(request.path);
    while (const auto entry = walk.next()) {
        // What is no file holds nothing; writing into a pipe would wait for a reader, and a link is not followed.
        if (entry->type == FileType::Regular)
            request.parts.push_back(joinedPath(request.path, entry->path));
    }
    if (const auto& failure = walk.failure())
        request.obstacle = Error{failure->kind, joinedPath(request.path, failure->path), failure->reason};
}

} // namespace sweeply
