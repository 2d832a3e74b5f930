#pragma once

#include "platform/Error.h"

#include <string>
#include <vector>

namespace sweeply {

class ScanController;

/// What is cleaned again and again without a person, and when.
struct Schedule {
    std::string calendar; ///< as systemd writes times of a calendar
    std::string root;     ///< the target's, an absolute path of this machine
    std::string user;     ///< whose files are meant; for people and the name, for the options say it
    /// What stands before the command beside the root: whose files, which system, redirected folders.
    std::vector<std::string> options;
    /// Names of single modules, in the catalogue's order.
    std::vector<std::string> modules;
};

/// The name by which people, and the service manager, know it: the same for the same modules of the same target,
/// whenever they are cleaned, and safe as a file's.
[[nodiscard]] std::string nameOf(const Schedule& schedule);
[[nodiscard]] bool isNameOfSchedule(std::string_view name);

/// The modules that people mean by these names, of those that need no person: what cannot be made again is removed only
/// after somebody saw it. Without names those that are switched on and need none. An error names the one that needs a
/// person, or is none.
[[nodiscard]] Result<std::vector<std::string>> modulesToSchedule(ScanController& controller,
                                                                 const std::vector<std::string>& names);

/// Asks the system whether these are times of a calendar; an error is the system's own, or says what is missing for
/// that.
Result<void> checkCalendar(const std::string& calendar);

} // namespace sweeply
