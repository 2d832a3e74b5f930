#pragma once

namespace sweeply {

class ADScanController;
class Alerts;
class ChangeRuns;
class UninstallSteps;
class UserDefaults;

/// The window's question before anything is uninstalled, and whether that can be put back. Main thread.
class UninstallQuestion final {
  public:
    struct Services {
        Alerts& alerts;
        ChangeRuns& runs;
        UserDefaults& defaults;
        const UninstallSteps& steps;
    };

    /// All outlive this.
    explicit UninstallQuestion(Services services) : m_services(services) {}

    /// Asks about what is checked in the module. After a "Yes" the next run keeps what it takes, or does not, as the
    /// box was left; so it is found the next time.
    [[nodiscard]] bool confirms(const ADScanController& module);

  private:
    Services m_services;
};

} // namespace sweeply
