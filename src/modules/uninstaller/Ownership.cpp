#include "modules/uninstaller/Ownership.h"

#include "modules/uninstaller/UninstallPreferences.h"
#include "platform/UserDefaults.h"

#include <utility>

namespace sweeply {

std::optional<Claims> Ownership::claimsOn(Claims::Subject subject, const WorkControl* control) const {
    auto index = m_services.installed.index(control);
    if (!index)
        return std::nullopt;
    return std::optional<Claims>(std::in_place, m_services, std::move(index), std::move(subject));
}

bool Ownership::checksWeakMatches() const {
    return m_isToldToCheckWeakMatches || m_defaults.boolForKey(uninstaller::kCheckWeakMatches);
}

} // namespace sweeply
