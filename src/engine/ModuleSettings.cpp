#include "engine/ModuleSettings.h"

#include "platform/UserDefaults.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace sweeply {

namespace {

struct RowSwitch {
    std::uint8_t viewCode;
    std::string_view key;
};

constexpr std::array kRowSwitches{
    RowSwitch{1, "CleanCaches"},
    RowSwitch{1, "CleanSystemCaches"},
    RowSwitch{1, "CleanPhotoSyncCache"},
    RowSwitch{2, "CleanUserLogs"},
    RowSwitch{2, "CleanSystemLogs"},
    RowSwitch{3, "CleanLanguageTranslations"},
    RowSwitch{4, "CleanUniversalBinaries"},
    RowSwitch{5, "CleanDevJunk"},
    RowSwitch{6, "CleanWidgets"},
};

} // namespace

bool isRowCheckedByPreferences(std::uint8_t viewCode, const UserDefaults& defaults) {
    return std::ranges::any_of(
        kRowSwitches, [&](const RowSwitch& row) { return row.viewCode == viewCode && defaults.boolForKey(row.key); });
}

} // namespace sweeply
