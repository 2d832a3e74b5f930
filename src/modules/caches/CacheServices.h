#pragma once

#include "engine/EngineServices.h"

namespace sweeply {

class DiskSizes;
class FileManager;
class IgnoreList;
class SystemVersion;
class Workspace;
struct FolderConstants;

/// What the cache modules work with; all of it outlives them.
struct CacheServices {
    EngineServices engine;
    FileManager& files;
    const DiskSizes& sizes;
    const FolderConstants& folders;
    const IgnoreList& ignoreList;
};

} // namespace sweeply
