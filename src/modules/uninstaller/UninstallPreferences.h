#pragma once

#include "engine/PreferenceKey.h"

#include <array>

namespace sweeply {

/// What the uninstallers keep in the preferences.
namespace uninstaller {

inline constexpr const char* kCheckWeakMatches = "CheckWeakMatches";
inline constexpr const char* kKeepUninstalled = "KeepUninstalled";

inline constexpr std::array kPreferences{
    PreferenceKey{kCheckWeakMatches, PreferenceKey::Type::Boolean,
                  "check also what matches an application weakly, where nobody else claims it", false},
    PreferenceKey{kKeepUninstalled, PreferenceKey::Type::Boolean,
                  "the window's question before uninstalling has its box to keep what goes checked", true},
};

} // namespace uninstaller
} // namespace sweeply
