#include "modules/logs/LogsController.h"

#include "appcore/FolderConstants.h"
#include "appcore/RemovalPrimitives.h"
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
                        {kModuleKey, EvidenceRule::LogSize, kSmallestLog});
}

bool LogsController::rotateLogAtPath(const std::string& path) {
    const auto attributes = m_files.attributesOfItemAtPath(path, Links::DontFollow);
    if (!attributes && attributes.error().kind == ErrorKind::NotFound)
        return true;
    try {
        if (!attributes || attributes->type != FileType::Directory)
            return touchFileAtPath(path);
        return isReportersFolder(path) ? globalScanController().removals().tryToRemoveAllFilesInDirectory(path)
                                       : touchFilesBelow(path);
    } catch (const std::exception& exception) {
        services().log.log(formatText("Exception while cleaning log %@: %@", {path, exception.what()}));
        return true;
    }
}

bool LogsController::touchFilesBelow(const std::string& path) {
    auto walk = m_files.enumeratorAtPath(path);
    while (const auto entry = walk.next()) {
        // What is no file holds nothing; writing into a pipe would wait for a reader, and a link is not followed.
        if (entry->type == FileType::Regular && !touchFileAtPath(joinedPath(path, entry->path)))
            return false;
    }
    if (const auto& failure = walk.failure())
        return globalScanController().removals().failed(joinedPath(path, failure->path), *failure);
    return true;
}

bool LogsController::touchFileAtPath(const std::string& path) {
    setCurrentItem(path);
    return globalScanController().removals().tryToEmptyFileAtPath(path);
}

} // namespace sweeply
