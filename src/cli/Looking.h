#pragma once

#include "platform/Error.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class ADScanController;
class Session;

/// What a scan looks at.
struct Scope {
    /// Modules by their names; absent for those that are switched on.
    std::optional<std::vector<std::string>> modules;
    /// Items of the target for these modules to look at in place of a scan.
    std::vector<std::string> paths;
};

/// What the command line of a scan names.
[[nodiscard]] Result<Scope> scopeOf(Session& session);

/// Scans, or has the modules look at the paths; returns when that has ended. An error says what is wrong with the
/// scope.
Result<void> look(Session& session, const Scope& scope);

/// Has each path looked at by the module that uninstalls such items, and nothing else; returns when that has ended.
/// Those modules.
[[nodiscard]] std::vector<ADScanController*> lookToUninstall(Session& session, const std::vector<std::string>& paths);

/// The module of a row, by the row's name.
[[nodiscard]] ADScanController& moduleNamed(Session& session, std::string_view name);

} // namespace sweeply
