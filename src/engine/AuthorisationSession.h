#pragma once

#include "appcore/PrivilegedExecution.h"

#include <atomic>
#include <functional>

namespace sweeply {

class Alerts;
class MainThread;
class SystemLog;

/// Asks the person for administrator rights: once in a removal, when the first module needs them, or at the lock
/// button.
class AuthorisationSession final {
  public:
    /// What the person chose at the prompt.
    enum class Choice { Cancel = 0, Authenticate = 1, Skip = 2 };

    /// All outlive this. `asksNobody`: the rights are there without a password, so there is nothing to prompt for.
    AuthorisationSession(PrivilegedExecution& privileged, Alerts& alerts, MainThread& mainThread, SystemLog& log,
                         bool asksNobody);

    /// A removal starts: its first module that needs rights asks again.
    void startRun() { m_demandedOnce = false; }
    /// May privileged removals be made? Runs `cancelled` when the person would rather stop everything. Any thread.
    bool demanded(const std::function<void()>& cancelled);
    /// The lock button: obtains the rights, or gives them back. Main thread.
    void authentificate();
    [[nodiscard]] bool isAuthorised() const { return m_privileged.isAuthorised(); }
    /// What stands on the lock. Main thread.
    [[nodiscard]] const std::string& lockText() const { return m_lockText; }
    /// The menu item that does what the lock does.
    [[nodiscard]] std::string menuItemTitle() const;

  private:
    [[nodiscard]] Choice prompt();

    PrivilegedExecution& m_privileged;
    Alerts& m_alerts;
    MainThread& m_mainThread;
    SystemLog& m_log;
    const bool m_asksNobody;
    std::atomic<bool> m_demandedOnce{false};
    std::string m_lockText;
};

} // namespace sweeply
