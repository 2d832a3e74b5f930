#include "tools/SweeplyHelperTool/VolumeRun.h"

#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <ctime>

namespace helper {

using namespace sweeply;

namespace {

FolderConstants foldersIn(const std::string& home) {
    FolderConstants folders{std::string(lastPathComponent(home))};
    folders.home = home;
    return folders;
}

} // namespace

VolumeRun::VolumeRun(FileManager& volume, FileManager& machine, const std::string& home, SystemLog& log)
    : m_folders(foldersIn(home)), m_tools(std::string(), volume), m_privileged(m_rights, m_tools, log),
      m_sizes(volume, m_version), m_tasks(m_tools, log), m_loginItems(volume, m_folders, log),
      m_launchItems(volume, m_folders, m_tasks, log),
      m_packages({volume, m_folders, m_version, m_tools, m_privileged, m_alerts, m_loop, log}),
      m_gate({volume, m_folders, m_sizes, m_privileged, m_tools, m_loginItems, m_launchItems, m_packages, log}),
      m_defaults(machine, m_folders.expandTilde("~/Library/Preferences/com.brindle.Sweeply.plist"), log),
      m_runs({machine, m_folders, m_gate, m_defaults, m_notifications, log, "helper", volume.rootPath(),
              [] { return std::int64_t{std::time(nullptr)}; }}) {
    m_runs.setKeeping(Keeping::Off);
}

ChangeOutcome VolumeRun::remove(const std::string& path) {
    const auto item = m_sizes.measure(path);
    ChangeRequest request{Operation::Remove, path, changedKindOf(item.identity.kind)};
    request.seen = item.identity;
    request.size = item.size;
    request.module = "volumes";
    return m_gate.perform(request);
}

} // namespace helper
