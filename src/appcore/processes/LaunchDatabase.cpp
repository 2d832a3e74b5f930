#include "appcore/processes/LaunchDatabase.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/SystemLog.h"
#include "platform/SystemVersion.h"

#include <string>
#include <utility>
#include <vector>

namespace sweeply {

namespace {

constexpr const char* kTool = "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
                              "LaunchServices.framework/Versions/A/Support/lsregister";
constexpr const char* kOldTool = "/System/Library/Frameworks/ApplicationServices.framework/Frameworks/"
                                 "LaunchServices.framework/Support/lsregister";

} // namespace

void LaunchDatabase::rebuildLaunchDB(std::function<void()> finished) {
    m_thread = std::jthread([this, finished = std::move(finished)] {
        std::vector<std::string> arguments{"-kill", "-r", "-domain", "local", "-domain", "system", "-domain", "user"};
        if (!m_services.files.isHostRoot())
            arguments.insert(arguments.end(),
                             {"--volume", m_services.files.rootPath(), "--home", m_services.folders.home});
        const char* tool = m_services.version.isTiger() ? kOldTool : kTool;
        if (!m_services.tasks.getOutput(tool, arguments))
            m_services.log.log(formatText("Exception occured while rebuildLaunchDB: %@", {tool}));
        m_services.mainThread.runLater([isAlive = std::weak_ptr<const bool>(m_isAlive), finished] {
            if (!isAlive.expired())
                finished();
        });
    });
}

} // namespace sweeply
