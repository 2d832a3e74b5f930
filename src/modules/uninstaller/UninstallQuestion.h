#pragma once

#include "platform/Alerts.h"
#include "platform/Error.h"

#include <vector>

namespace sweeply {

class ADScanController;
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

    // For a question that is shown in another way

    /// The box that offers to keep what cannot be made again: checked the first time, then as it was left.
    [[nodiscard]] AlertCheckBox keepingBox() const;
    /// The person said yes, with the box like this, after he was told what cannot be kept.
    void settleKeeping(bool keeps, const std::vector<Error>& obstacles);

  private:
    Services m_services;
};

} // namespace sweeply
