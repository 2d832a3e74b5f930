#include "app/ModuleCatalog.h"

#include "platform/Localization.h"

#include <array>

namespace sweeply {

namespace {

constexpr std::array kCaches{
    ModuleSwitch{"user-caches", "CleanCaches", true},
    ModuleSwitch{"photo-caches", "CleanPhotoSyncCache", true},
    ModuleSwitch{"system-caches", "CleanSystemCaches", false},
};

constexpr std::array kRows{
    ModuleRow{"caches", translatable("Caches"), translatable("Files that applications can make again"), 1, kCaches},
};

} // namespace

std::span<const ModuleRow> moduleCatalog() { return kRows; }

} // namespace sweeply
