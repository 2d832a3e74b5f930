#include "engine/RemovalPreview.h"

#include "engine/CleanWalk.h"
#include "engine/ModuleRows.h"

#include <mutex>
#include <utility>

namespace sweeply {

std::vector<PreviewedModule> previewOfRemoval(const std::vector<std::unique_ptr<ScanObject>>& rows,
                                              TreeLock& treeLock) {
    std::vector<PreviewedModule> preview;
    const std::lock_guard lock(treeLock);
    for (const auto& row : rows) {
        if (!ModuleRows::takesPartInRemoval(*row))
            continue;
        for (auto* part : row->correspondingScanController()->parts()) {
            PreviewedModule module{row.get(), part, CleanWalk::leavesToClean(*part->rootNode())};
            for (const auto& item : module.items)
                module.size += item->longSize();
            if (!module.items.empty())
                preview.push_back(std::move(module));
        }
    }
    return preview;
}

} // namespace sweeply
