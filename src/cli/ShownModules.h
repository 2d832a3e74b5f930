#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class ADScanControllerView;
class Application;

/// A module whose results a command shows.
struct ShownModule {
    std::string_view name;
    std::string title; ///< for people, in their language
    std::uint8_t viewCode;
    bool isChecked;
    ADScanControllerView& module;
};

/// The figures of some modules together.
struct ShownTotals {
    std::uint64_t totalSize = 0; ///< bytes, like the next
    std::uint64_t foundSize = 0; ///< what a removal would free
    std::size_t filesFound = 0;
    std::size_t filesFoundInEnabled = 0;
};

/// Those that took part in a scan or were given something, in the order of the list.
[[nodiscard]] std::vector<ShownModule> shownModules(Application& application);
/// The lists of installed extensions, also empty ones.
[[nodiscard]] std::vector<ShownModule> extensionLists(Application& application);
[[nodiscard]] ShownTotals totalsOf(const std::vector<ShownModule>& modules);

} // namespace sweeply
