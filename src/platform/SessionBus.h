#pragma once

#include "platform/Alerts.h"
#include "platform/Error.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sweeply {

class SystemLog;

/// The system-wide notification that asks for applications to be uninstalled.
struct UninstallNotification {
    std::string command; ///< empty where the sender gave none, as with the list
    std::vector<std::string> applications;
};

/// What others ask of this program over the bus. Called on the bus's own thread.
struct BusRequests {
    /// Files to open, as paths or pseudo-files, in the order of the sender.
    std::function<void(std::vector<std::string>)> open;
    /// The program was started once more with nothing to open.
    std::function<void()> activate;
    /// Nothing: the notification came without anything in it.
    std::function<void(std::optional<UninstallNotification>)> uninstallApplications;
};

/// The desktop session's message bus.
///
/// Messages are a stranger's: one of the wrong form is logged and answered with an error, and of more paths than any
/// person has files to open the rest is dropped. Thread-safe.
class SessionBus final {
  public:
    /// Nothing where there is no bus, with one line in the log; the program runs without.
    [[nodiscard]] static std::unique_ptr<SessionBus> connect(SystemLog& log);
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    /// Becomes the one running Sweeply and takes requests from then on. False when another one is it already; only
    /// notifications are heard then. Once.
    bool own(BusRequests requests);
    /// Does a Sweeply run?
    [[nodiscard]] bool isOwned();
    /// Hands files to the Sweeply that runs, or to the one that the desktop starts for them; without any it comes to
    /// the front.
    Result<void> openInRunning(const std::vector<std::string>& files);
    /// Tells whichever Sweeply runs.
    Result<void> post(const UninstallNotification& notification);
    /// Shows a note on the desktop, where something shows such notes.
    Result<void> notify(const DesktopNotification& note);

  private:
    struct Connection;
    explicit SessionBus(std::unique_ptr<Connection> connection);

    std::unique_ptr<Connection> m_connection;
};

} // namespace sweeply
