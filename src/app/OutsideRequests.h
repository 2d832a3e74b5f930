#pragma once

#include "platform/SessionBus.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace sweeply {

class MainThread;
class SpecialCommands;
class SystemLog;

/// There is one running Sweeply a session, and what others ask of it comes here: files from the command line of a
/// second start, files that the desktop opens, the notification of our own watchers. Main thread.
class OutsideRequests final {
  public:
    /// All outlive this. `activate` brings the program to the front. Without a session bus the program is alone.
    OutsideRequests(SpecialCommands& commands, MainThread& mainThread, SystemLog& log, std::function<void()> activate);
    /// Requests not yet acted on are dropped.
    ~OutsideRequests();
    OutsideRequests(const OutsideRequests&) = delete;
    OutsideRequests& operator=(const OutsideRequests&) = delete;

    /// Takes requests from now on, the program's own arguments first. False when a Sweeply runs already: it got the
    /// files, and this one should end. Once.
    bool start(const std::vector<std::string>& files);

    /// Nothing where there is none.
    [[nodiscard]] SessionBus* bus() const { return m_bus.get(); }

  private:
    void open(const std::vector<std::string>& files);
    /// Hands the call to the main thread, where it is made unless this is gone by then.
    void later(std::function<void()> call);

    SpecialCommands& m_commands;
    MainThread& m_mainThread;
    SystemLog& m_log;
    const std::function<void()> m_activate;
    std::shared_ptr<const bool> m_isAlive = std::make_shared<const bool>(true);
    std::unique_ptr<SessionBus> m_bus; ///< last: its thread ends before the rest goes
};

} // namespace sweeply
