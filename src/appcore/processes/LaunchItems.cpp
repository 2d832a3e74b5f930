#include "appcore/processes/LaunchItems.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "platform/BundleInfo.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <sstream>

namespace sweeply {

namespace {

constexpr const char* kLaunchctl = "/bin/launchctl";

/// Where the system itself looks for a program that is given by its bare name.
constexpr std::string_view kStandardPath = "/usr/bin:/bin:/usr/sbin:/sbin";

} // namespace

std::vector<std::string> LaunchItems::getAllLaunchFiles() const {
    std::vector<std::string> found;
    for (const char* library : {"~/Library", "/Library"}) {
        for (const char* kind : {"LaunchAgents", "LaunchDaemons", "PrivilegedHelperTools"}) {
            const std::string folder = joinedPath(m_folders.expandTilde(library), kind);
            const auto entries = m_files.contentsOfDirectoryAtPath(folder);
            if (!entries)
                continue;
            for (const auto& entry : *entries) {
                if (pathExtension(entry.name) == "plist")
                    found.push_back(joinedPath(folder, entry.name));
            }
        }
    }
    return found;
}

Result<LaunchDefinition> LaunchItems::definitionAtPath(const std::string& path) const {
    const auto list = propertyListAtPath(m_files, path);
    if (!list)
        return Failure(list.error());
    LaunchDefinition definition;
    if (const auto* label = list->findString("Label"))
        definition.label = *label;
    if (const auto* program = list->findString("Program"))
        definition.program = *program;
    const auto* arguments = list->find("ProgramArguments");
    if (!definition.program && arguments && arguments->asArray() && !arguments->asArray()->empty()) {
        if (const auto* first = arguments->asArray()->front().asString())
            definition.program = *first;
    }
    const auto* environment = list->find("EnvironmentVariables");
    if (const auto* folders = environment ? environment->findString("PATH") : nullptr)
        definition.searchPath = *folders + ":";
    definition.searchPath += kStandardPath;
    return definition;
}

bool LaunchItems::isProgramMissing(const LaunchDefinition& definition) const {
    if (!definition.program || definition.program->empty())
        return false;
    const std::string program = m_folders.expandTilde(*definition.program);
    if (program.find('/') != std::string::npos)
        return program.starts_with('/') && m_files.isMissingAtPath(program);
    std::istringstream searchPath(definition.searchPath);
    for (std::string folder; std::getline(searchPath, folder, ':');) {
        if (folder.starts_with('/') && !m_files.isMissingAtPath(joinedPath(folder, program)))
            return false;
    }
    return true;
}

void LaunchItems::removeLaunchDaemon(const std::string& path) const {
    const auto place = m_files.hostPath(path);
    if (!place || !m_files.isHostRoot())
        return;
    const auto unloaded = m_tasks.launchTaskAndGetTermStatusWithCmd(kLaunchctl, {"unload", "-w", *place});
    const auto definition = definitionAtPath(path);
    if (definition && definition->label)
        m_tasks.launchTaskAndGetTermStatusWithCmd(kLaunchctl, {"remove", *definition->label});
    if (!unloaded || *unloaded != 0)
        m_log.log(formatText("Failed to unload launch daemon %@", {path}));
}

void LaunchItems::loadLaunchDaemon(const std::string& path) const {
    const auto place = m_files.hostPath(path);
    if (!place || !m_files.isHostRoot())
        return;
    const auto loaded = m_tasks.launchTaskAndGetTermStatusWithCmd(kLaunchctl, {"load", "-w", *place});
    if (!loaded || *loaded != 0)
        m_log.log(formatText("Failed to load launch daemon %@", {path}));
}

} // namespace sweeply
