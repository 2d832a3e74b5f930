#pragma once

#include "appcore/TargetPart.h"
#include "engine/EngineServices.h"

#include <string>
#include <vector>

namespace sweeply {

class DiskSizes;
class FileManager;
class IgnoreList;
class SWApplicationCore;
class SharedSurveys;
class WorkControl;
struct FolderConstants;

/// What the scan modules work with; all of it outlives them.
struct ModuleServices {
    EngineServices engine;
    FileManager& files;
    const DiskSizes& sizes;
    const FolderConstants& folders;
    IgnoreList& ignoreList;
    const SWApplicationCore& applications;
    SharedSurveys& surveys;
    /// What of the target a scan looks at.
    TargetPart part = {};

    /// The applications in that part, once they are known; what is known so far when `control` is stopped meanwhile.
    [[nodiscard]] std::vector<std::string> applicationsToScan(const WorkControl* control) const;
};

} // namespace sweeply
