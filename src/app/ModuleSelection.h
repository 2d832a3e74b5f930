#pragma once

#include "platform/Error.h"

#include <string>
#include <vector>

namespace sweeply {

class ScanController;
class TargetPart;

/// Which switches a person means by these module names: a row's name stands for all of its switches. The switches' keys
/// in the preferences, in the catalogue's order. An error names what is no module.
[[nodiscard]] Result<std::vector<std::string>> switchesNamed(const std::vector<std::string>& names);

/// Every module that scans, by the names of the rows.
[[nodiscard]] std::vector<std::string> everyModule();

/// Has exactly these modules take part in the next scan, whatever the stored switches say, and stores nothing. Before
/// the first scan; main thread.
void selectModules(ScanController& controller, const std::vector<std::string>& switches);

/// Has modules that find nothing in that part of the target take no part in the next scan.
void narrowSelection(ScanController& controller, const TargetPart& part);
/// Those of the switches whose modules find something in that part.
[[nodiscard]] std::vector<std::string> switchesFor(const TargetPart& part, std::vector<std::string> switches);

/// The modules that take part in the next scan, by the names of their switches.
[[nodiscard]] std::vector<std::string> selectedModules(const ScanController& controller);

} // namespace sweeply
