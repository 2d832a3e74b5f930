#pragma once

#include "engine/PreferenceKey.h"
#include "platform/Localization.h"

#include <array>

namespace sweeply {

/// What the ignore list keeps in the preferences.
namespace ignorelist {

inline constexpr const char* kDisabledNodes = "DisabledNodesIgnoreList";
inline constexpr const char* kApplications = "IgnoreApps";
inline constexpr const char* kNeedUpdate = "BLneedUpdate";
inline constexpr const char* kSharingPermission = "IgnoreListSharingPermission";
inline constexpr const char* kSharingPermissionWasAsked = "IgnoreListSharingPermissionWasAsked";
inline constexpr const char* kAutoUpdate = "GlobalIgnoreListAutoUpdate";
inline constexpr const char* kAutoUpdateLastDate = "GlobalIgnoreListAutoUpdateLastDate";

inline constexpr std::array kPreferences{
    PreferenceKey{kDisabledNodes, PreferenceKey::Type::Dictionary, "the unchecked items of each module"},
    PreferenceKey{kApplications, PreferenceKey::Type::TextArray, "applications to leave alone, by bundle identifier",
                  PreferenceKey::EmptyArray()},
    PreferenceKey{kNeedUpdate, PreferenceKey::Type::Boolean, "that list changed since it was last reported"},
    PreferenceKey{kSharingPermission, PreferenceKey::Type::Boolean, "that list may be reported", false},
    PreferenceKey{kSharingPermissionWasAsked, PreferenceKey::Type::Boolean, "the user was asked whether it may", false},
    PreferenceKey{kAutoUpdate, PreferenceKey::Type::Boolean, "look for a newer shared list at start", true},
    PreferenceKey{kAutoUpdateLastDate, PreferenceKey::Type::Text, "when a newer shared list was last looked for",
                  std::string_view(translatable("Never"))},
};

} // namespace ignorelist
} // namespace sweeply
