#pragma once

#include "engine/PreferenceKey.h"

#include <array>

namespace sweeply {

/// What the uninstallers keep in the preferences.
namespace uninstaller {

inline constexpr const char* kCheckWeakMatches = "CheckWeakMatches";

inline constexpr std::array kPreferences{
    PreferenceKey{kCheckWeakMatches, PreferenceKey::Type::Boolean,
                  "check also what matches an application weakly, where nobody else claims it", false},
};

} // namespace uninstaller
} // namespace sweeply
