#pragma once

#include "engine/EngineServices.h"
#include "engine/plan/Plan.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace sweeply {

class ADScanController;
class ChangeGate;

// Between plans and what modules found. Main thread, while nothing is scanned or removed.

/// Every item of these modules that a removal could take, checked or not, each once.
[[nodiscard]] std::vector<PlannedItem> itemsFoundBy(std::span<ADScanController* const> modules, TreeLock& treeLock);

/// Checks of what the modules found just now exactly what the plan has checked and what is still what it was when the
/// plan was made. What is checked in the plan and stays: gone, changed since, or not found any more. The items' modules
/// must be among `modules`.
[[nodiscard]] std::vector<LeftAlone> checkAsPlanned(const Plan& plan, std::span<ADScanController* const> modules,
                                                    const ChangeGate& gate, TreeLock& treeLock);

} // namespace sweeply
