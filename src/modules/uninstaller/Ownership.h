#pragma once

#include "appcore/ownership/Claims.h"

#include <atomic>
#include <optional>

namespace sweeply {

class UserDefaults;
class WorkControl;

/// What uninstallers ask about whose things are. Thread-safe.
class Ownership final {
  public:
    /// All outlive this.
    Ownership(const Claims::Services& services, const UserDefaults& defaults)
        : m_services(services), m_defaults(defaults) {}

    /// Who claims what is found for the subject. Waits until the installed applications are known; nothing when
    /// `control` is stopped before; null waits without end.
    [[nodiscard]] std::optional<Claims> claimsOn(Claims::Subject subject, const WorkControl* control) const;

    /// Is checked at first, too, what matches weakly and nobody claims?
    [[nodiscard]] bool checksWeakMatches() const;
    /// From now on, whatever the preference says.
    void checkWeakMatches() { m_isToldToCheckWeakMatches = true; }

  private:
    const Claims::Services m_services;
    const UserDefaults& m_defaults;
    std::atomic<bool> m_isToldToCheckWeakMatches{false};
};

} // namespace sweeply
