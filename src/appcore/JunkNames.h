#pragma once

#include <algorithm>
#include <array>
#include <string_view>

/// Names of files and folders that systems leave behind on volumes.
namespace sweeply::junk {

inline constexpr std::array<std::string_view, 2> kFinder{".DS_Store", ".Spotlight-V100"};
inline constexpr std::array<std::string_view, 1> kWindows{"Thumbs.db"};
inline constexpr std::array<std::string_view, 1> kTrash{".Trash"};
/// A volume's trash, with a folder for each user.
inline constexpr std::array<std::string_view, 1> kTrashes{".Trashes"};

[[nodiscard]] constexpr bool isOneOf(const auto& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

} // namespace sweeply::junk
