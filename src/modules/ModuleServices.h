#pragma once

#include "engine/EngineServices.h"

namespace sweeply {

class DiskSizes;
class FileManager;
class IgnoreList;
class SWApplicationCore;
struct FolderConstants;

/// What the scan modules work with; all of it outlives them.
struct ModuleServices {
    EngineServices engine;
    FileManager& files;
    const DiskSizes& sizes;
    const FolderConstants& folders;
    IgnoreList& ignoreList;
    const SWApplicationCore& applications;
};

} // namespace sweeply
