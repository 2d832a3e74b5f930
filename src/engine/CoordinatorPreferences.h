#pragma once

#include "engine/PreferenceKey.h"

#include <array>

namespace sweeply {

/// What the coordinator keeps in the preferences.
namespace coordinator {

inline constexpr const char* kUseSecureErase = "UseSecureErase";
inline constexpr const char* kFirstVolumeCleaner = "FirstVolumeCleaner";
inline constexpr const char* kFirstAutomaticAppUninstaller = "FirstAutomaticAppUninstaller";
inline constexpr const char* kDontShowUninstallAlert = "DontShowAutomaticallAppUninstallAlert";
inline constexpr const char* kLastScannedOn = "lastScannedOn";
inline constexpr const char* kTotalSizeSaved = "totalSizeSaved";
inline constexpr const char* kKeepRemovedDays = "KeepRemovedDays";

inline constexpr std::array kPreferences{
    PreferenceKey{kUseSecureErase, PreferenceKey::Type::Boolean, "overwrite files before they are removed", false},
    PreferenceKey{kFirstVolumeCleaner, PreferenceKey::Type::Boolean, "the volume watcher was installed once"},
    PreferenceKey{kFirstAutomaticAppUninstaller, PreferenceKey::Type::Boolean, "the trash watcher was installed once"},
    PreferenceKey{kDontShowUninstallAlert, PreferenceKey::Type::Boolean,
                  "uninstall trashed applications without the explanation"},
    PreferenceKey{kLastScannedOn, PreferenceKey::Type::Text, "the day of the last scan"},
    PreferenceKey{kTotalSizeSaved, PreferenceKey::Type::Number, "bytes removed over all runs"},
    PreferenceKey{kKeepRemovedDays, PreferenceKey::Type::Number,
                  "how many days what is uninstalled is kept; 0 removes it at once"},
};

} // namespace coordinator
} // namespace sweeply
