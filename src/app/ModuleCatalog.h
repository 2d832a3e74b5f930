#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace sweeply {

// The codes by which rows of the list and their pages are known.
inline constexpr std::uint8_t kCachesView = 1;
inline constexpr std::uint8_t kLogsView = 2;
inline constexpr std::uint8_t kLanguagesView = 3;
inline constexpr std::uint8_t kBinariesView = 4;
inline constexpr std::uint8_t kDevJunkView = 5;
inline constexpr std::uint8_t kExtensionsView = 6;
inline constexpr std::uint8_t kUninstallerView = 7;
inline constexpr std::uint8_t kEraserView = 8;

/// In which part of a target with several users a module finds things: in what is one user's, in what all of them
/// share, or in each.
enum class FindsIn : std::uint8_t { UsersOwn, Machines, Both };

/// A module that has a switch of its own, by the names that people and preferences give it.
struct ModuleSwitch {
    std::string_view name;         ///< on the command line
    std::string_view defaultsName; ///< its key in the preferences
    bool isOnByDefault;
    FindsIn findsIn;
};

/// One row of the module list.
struct ModuleRow {
    std::string_view name;        ///< on the command line
    std::string_view title;       ///< a key of the localised texts
    std::string_view description; ///< likewise
    std::uint8_t viewCode;
    /// Its sub-modules in order; itself alone where it has none; empty for one that scans nothing.
    std::span<const ModuleSwitch> switches;
};

/// Every row, in the order in which modules scan, clean and are shown.
[[nodiscard]] std::span<const ModuleRow> moduleCatalog();
/// Those that scan, which come first.
[[nodiscard]] std::span<const ModuleRow> scanModules();

} // namespace sweeply
