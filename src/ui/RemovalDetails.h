#pragma once

#include "engine/RemovalPreview.h"
#include "platform/Error.h"
#include "ui/SectionModel.h"

#include <functional>
#include <vector>

namespace sweeply {

class FileManager;
class UninstallSteps;

/// What a look at each item tells of a removal that is still to come.
struct RemovalDetails {
    struct Module {
        std::vector<ListedItem> items;
        std::uint64_t needingAdministrator = 0;
    };
    std::vector<Module> modules; ///< as in the preview
    std::uint64_t needingAdministrator = 0;
    bool isVolumeReadOnly = false; ///< of some item
    std::vector<Error> obstacles;  ///< what could not be kept, each with the reason

    /// Takes its time, on any thread, while nothing is scanned or removed. Not whole when `isStopped` ended it.
    [[nodiscard]] static RemovalDetails of(const std::vector<PreviewedModule>& preview, const FileManager& files,
                                           const UninstallSteps& steps, const std::function<bool()>& isStopped);
};

} // namespace sweeply
