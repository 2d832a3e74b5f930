#pragma once

#include "appcore/changes/Change.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// One item as a scan found it. Path, module and kind together tell it from all others: a login item, for one, has the
/// path of the program that it starts. At one path only one of a file, a folder and a link can stand.
struct PlannedItem {
    std::string path;
    std::string module;
    ChangedKind kind = ChangedKind::File;
    std::uint64_t size = 0; ///< bytes that its removal frees
    bool isChecked = false;
    std::optional<Evidence> why = {};
    MeasuredItem seen = {}; ///< unknown for what is no file
};

/// Equal for the same item alone, also when it has become a file, folder or link.
[[nodiscard]] std::string keyOf(const PlannedItem& item);

/// Which system a plan is for.
struct PlanTarget {
    std::string root; ///< on the machine where the plan was made
    std::string user;
    std::string version;
    std::string processors; ///< "intel", "ppc" or "unknown"
};

/// What a scan found, to be looked through by somebody and removed later.
struct Plan {
    std::string made;    ///< "2026-11-24T05:00:00Z"
    std::string program; ///< its version
    PlanTarget target;
    std::string command; ///< "scan" or "uninstall"
    /// Of a scan the modules, by name, and the paths that they looked at in place of a scan; of an uninstallation the
    /// paths. Paths are the target's and begin with a slash.
    std::vector<std::string> arguments;
    bool isIncomplete = false; ///< something could not be read
    std::vector<PlannedItem> items = {};
};

/// No plan takes more bytes.
inline constexpr std::size_t kLargestPlan = std::size_t{128} << 20U;

/// The plan as a file has it, which docs/plan.md describes. Paths are bytes and come back as they were. TooLarge for
/// one that nobody could read back.
[[nodiscard]] Result<std::string> planText(const Plan& plan);

/// Reads a plan that anybody may have written. Damaged, without a path, for what is none, with the place and the
/// reason; Unavailable for one in another version's format.
[[nodiscard]] Result<Plan> parsePlan(std::string_view bytes);

} // namespace sweeply
