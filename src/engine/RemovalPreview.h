#pragma once

#include "engine/EngineServices.h"
#include "engine/ScanObject.h"
#include "engine/tree/Node.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace sweeply {

class ADScanController;

/// What a removal would take of one module.
struct PreviewedModule {
    const ScanObject* row = nullptr; ///< that the module belongs to
    ADScanController* module = nullptr;
    std::vector<Node::Pointer> items; ///< in the order in which they go; never empty
    std::uint64_t size = 0;           ///< of all items, in bytes

    bool operator==(const PreviewedModule&) const = default;
};

/// What a removal of all that is checked would take if it began now, in its order: the same modules, items and sizes.
/// Equal to an earlier one as long as it would take the same. Main thread.
[[nodiscard]] std::vector<PreviewedModule> previewOfRemoval(const std::vector<std::unique_ptr<ScanObject>>& rows,
                                                            TreeLock& treeLock);

} // namespace sweeply
