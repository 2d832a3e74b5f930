#include "app/ModuleCatalog.h"

#include "platform/Localization.h"

#include <algorithm>
#include <array>

namespace sweeply {

namespace {

constexpr std::array kCaches{
    ModuleSwitch{"user-caches", "CleanCaches", true, FindsIn::UsersOwn},
    ModuleSwitch{"photo-caches", "CleanPhotoSyncCache", true, FindsIn::UsersOwn},
    ModuleSwitch{"system-caches", "CleanSystemCaches", false, FindsIn::Machines},
};

constexpr std::array kLogs{
    ModuleSwitch{"user-logs", "CleanUserLogs", true, FindsIn::UsersOwn},
    ModuleSwitch{"system-logs", "CleanSystemLogs", false, FindsIn::Machines},
};
constexpr std::array kLanguages{ModuleSwitch{"languages", "CleanLanguageTranslations", true, FindsIn::Both}};
constexpr std::array kBinaries{ModuleSwitch{"binaries", "CleanUniversalBinaries", true, FindsIn::Both}};
constexpr std::array kDevJunk{ModuleSwitch{"dev-junk", "CleanDevJunk", true, FindsIn::Both}};

constexpr std::array kWidgets{ModuleSwitch{"widgets", "CleanWidgets", true, FindsIn::Both}};

constexpr std::array kRows{
    ModuleRow{"caches", translatable("Caches"),
              translatable("Finds what applications keep to be faster, and make again when they need it."), kCachesView,
              kCaches},
    ModuleRow{"logs", translatable("Logs"), translatable("Finds what programs wrote down about their work."), kLogsView,
              kLogs},
    ModuleRow{"languages", translatable("Language Files"),
              translatable("Finds localizations of applications in languages that you do not use."), kLanguagesView,
              kLanguages},
    ModuleRow{"binaries", translatable("Universal Binaries"),
              translatable("Finds code in applications for processors that the Mac has not."), kBinariesView,
              kBinaries},
    ModuleRow{"dev-junk", translatable("Development Junk"),
              translatable("Finds files for developers in applications, and clutter in folders that you add."),
              kDevJunkView, kDevJunk},
    ModuleRow{"widgets", translatable("Extensions"),
              translatable("Finds what widgets and programs that are gone left behind."), kExtensionsView, kWidgets},
    ModuleRow{"uninstaller",
              translatable("Application Uninstaller"),
              translatable("Finds everything that belongs to the applications that you select, drop or add."),
              kUninstallerView,
              {}},
    ModuleRow{"eraser",
              translatable("Quick Eraser"),
              translatable("Removes the files and folders that you drop or add, for good."),
              kEraserView,
              {}},
};

} // namespace

std::span<const ModuleRow> moduleCatalog() { return kRows; }

std::span<const ModuleRow> scanModules() {
    // The others come last.
    const auto end = std::ranges::find_if(kRows, [](const ModuleRow& row) { return row.switches.empty(); });
    return {kRows.begin(), end};
}

} // namespace sweeply
