#include "app/OutsideRequests.h"

#include "app/SpecialCommands.h"
#include "platform/MainThread.h"
#include "platform/SystemLog.h"

#include <utility>

namespace sweeply {

OutsideRequests::OutsideRequests(SpecialCommands& commands, MainThread& mainThread, SystemLog& log,
                                 std::function<void()> activate)
    : m_commands(commands), m_mainThread(mainThread), m_log(log), m_activate(std::move(activate)),
      m_bus(SessionBus::connect(log)) {}

OutsideRequests::~OutsideRequests() = default;

bool OutsideRequests::start(const std::vector<std::string>& files) {
    if (m_bus) {
        BusRequests requests;
        requests.open = [this](const auto& paths) {
            later([this, paths] {
                m_activate();
                open(paths);
            });
        };
        requests.activate = [this] { later([this] { m_activate(); }); };
        requests.uninstallApplications = [this](const auto& notification) {
            later([this, notification] { m_commands.uninstallApplications(notification); });
        };
        if (!m_bus->own(std::move(requests))) {
            const auto handedOver = m_bus->openInRunning(files);
            if (handedOver)
                return false;
            m_log.log(handedOver.error().message());
        }
    }
    later([this, files] { open(files); });
    return true;
}

void OutsideRequests::open(const std::vector<std::string>& files) {
    for (const auto& file : files)
        m_commands.openFile(file);
    // A request comes whole: no more files belong to it.
    m_commands.processSpecialCommands();
}

void OutsideRequests::later(std::function<void()> call) {
    m_mainThread.runLater([isAlive = std::weak_ptr<const bool>(m_isAlive), call = std::move(call)] {
        if (!isAlive.expired())
            call();
    });
}

} // namespace sweeply
