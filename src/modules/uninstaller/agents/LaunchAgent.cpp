#include "modules/uninstaller/agents/LaunchAgent.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"

#include <utility>

namespace sweeply {

namespace {

constexpr const char* kLaunchctl = "/bin/launchctl";
constexpr const char* kAgents = "~/Library/LaunchAgents";
constexpr std::size_t kLargestConfiguration = std::size_t{1} << 20U;

Failure because(std::string reason) { return Failure(Error{ErrorKind::Other, {}, std::move(reason)}); }

} // namespace

LaunchAgent::LaunchAgent(FileManager& files, const FolderConstants& folders, const ADTaskRunner& tasks,
                         std::string label)
    : m_files(files), m_folders(folders), m_tasks(tasks), m_label(std::move(label)) {}

std::string LaunchAgent::configurationPath() const {
    return joinedPath(m_folders.expandTilde(kAgents), m_label + ".plist");
}

std::optional<std::vector<std::string>> LaunchAgent::programArguments() const {
    const auto bytes = m_files.contentsAtPath(configurationPath(), kLargestConfiguration);
    const auto configuration = bytes ? plist::parse(*bytes) : tl::unexpected(bytes.error().reason);
    const auto* arguments = configuration ? configuration->find("ProgramArguments") : nullptr;
    return arguments && arguments->asArray() ? std::optional(plist::textsOf(*arguments)) : std::nullopt;
}

bool LaunchAgent::isLoaded() const {
    return m_tasks.launchTaskAndGetTermStatusWithCmd(kLaunchctl, {"list", m_label}) == 0;
}

Result<void> LaunchAgent::install(const plist::Dictionary& configuration) {
    if (!m_files.createDirectoryAtPath(m_folders.expandTilde(kAgents)))
        return because(localizedString("Failed to create directory for launch agent configuration."));
    const auto written = m_files.writeAtomically(configurationPath(), plist::writeXml(configuration));
    const auto place = written ? m_files.hostPath(configurationPath()) : Failure(written.error());
    if (!place || m_tasks.launchTaskAndGetTermStatusWithCmd(kLaunchctl, {"load", "-w", "-F", *place}) != 0) {
        (void)m_files.removeItemAtPath(configurationPath()); // or the next login would try it again
        return because(localizedString("Failed to load launch agent configuration"));
    }
    return {};
}

Result<void> LaunchAgent::uninstall() {
    const auto place = m_files.hostPath(configurationPath());
    if (!place)
        return {};
    m_tasks.launchTaskAndGetTermStatusWithCmd(kLaunchctl, {"unload", "-w", *place});
    m_tasks.launchTaskAndGetTermStatusWithCmd(kLaunchctl, {"remove", m_label});
    if (isLoaded())
        return because(localizedString("Failed to unload launch agent configuration."));
    if (!m_files.removeItemAtPath(configurationPath()))
        return because(localizedString("Failed to delete launch agent or configuration."));
    return {};
}

} // namespace sweeply
