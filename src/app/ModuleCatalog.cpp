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

constexpr std::array kLogs{
    ModuleSwitch{"user-logs", "CleanUserLogs", true},
    ModuleSwitch{"system-logs", "CleanSystemLogs", false},
};
constexpr std::array kLanguages{ModuleSwitch{"languages", "CleanLanguageTranslations", true}};

constexpr std::array kRows{
    ModuleRow{"caches", translatable("Caches"), translatable("Files that applications can make again"), 1, kCaches},
    ModuleRow{"logs", translatable("Logs"), translatable("What programs wrote down about their work"), 2, kLogs},
    ModuleRow{"languages", translatable("Language Files"), translatable("Localizations in languages you do not use"), 3,
              kLanguages},
};

} // namespace

std::span<const ModuleRow> moduleCatalog() { return kRows; }

} // namespace sweeply
