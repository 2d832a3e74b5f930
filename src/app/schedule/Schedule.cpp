#include "app/schedule/Schedule.h"

#include "app/ModuleCatalog.h"
#include "app/ModuleSelection.h"
#include "engine/ScanController.h"
#include "formats/UnitFile.h"
#include "platform/Localization.h"
#include "platform/Process.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <cstdint>

namespace sweeply {

namespace {

constexpr std::string_view kPrefix = "sweeply-";
constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
/// Of a folder's name, for a person to recognise it.
constexpr std::size_t kLongestHint = 40;
constexpr const char* kAnalyze = "/usr/bin/systemd-analyze";

/// FNV-1a: the same in every version and on every machine.
std::uint32_t digestOf(const std::vector<std::string>& texts) {
    std::uint32_t digest = 2'166'136'261U;
    const auto add = [&digest](unsigned char byte) { digest = (digest ^ byte) * 16'777'619U; };
    for (const auto& text : texts) {
        for (const char c : text)
            add(static_cast<unsigned char>(c));
        add(0);
    }
    return digest;
}

Failure needsPerson(std::string_view name) {
    return Failure(
        Error{ErrorKind::Other, std::string(name),
              localizedString(
                  "cannot be scheduled: what it removes cannot be made again, so that somebody looks at it first")});
}

/// What works on items that a person names, by the names of modules and commands.
bool worksOnNamedItems(std::string_view name) {
    constexpr std::string_view kCommands[]{"erase", "extensions", "leftovers", "uninstall"};
    return std::ranges::find(kCommands, name) != std::end(kCommands) ||
           std::ranges::any_of(moduleCatalog(),
                               [&](const ModuleRow& row) { return row.switches.empty() && row.name == name; });
}

} // namespace

std::string nameOf(const Schedule& schedule) {
    std::string name(kPrefix);
    for (const char c : lastPathComponent(schedule.root).substr(0, kLongestHint))
        name += kPlain.find(c) == std::string_view::npos ? '_' : c;
    std::vector<std::string> texts{schedule.root, schedule.user};
    texts.insert(texts.end(), schedule.options.begin(), schedule.options.end());
    texts.emplace_back();
    texts.insert(texts.end(), schedule.modules.begin(), schedule.modules.end());
    const auto digest = digestOf(texts);
    name += '-';
    for (int shift = 28; shift >= 0; shift -= 4)
        name += "0123456789abcdef"[(digest >> static_cast<unsigned>(shift)) & 15U];
    return name;
}

bool isNameOfSchedule(std::string_view name) {
    return name.starts_with(kPrefix) && name.find('/') == std::string_view::npos;
}

Result<std::vector<std::string>> modulesToSchedule(ScanController& controller, const std::vector<std::string>& names) {
    if (const auto needed = std::ranges::find_if(names, worksOnNamedItems); needed != names.end())
        return needsPerson(*needed);
    const auto switches = switchesNamed(names);
    if (!switches)
        return Failure(switches.error());
    std::vector<std::string> modules;
    for (const auto& row : scanModules()) {
        for (const auto* module : controller.moduleForViewCode(row.viewCode)->parts()) {
            const bool isNamed = std::ranges::find(*switches, module->defaultsName()) != switches->end();
            if (isNamed && module->removesWhatCannotBeMadeAgain())
                return needsPerson(module->moduleName());
            if (isNamed || (names.empty() && module->takesPartInScan() && !module->removesWhatCannotBeMadeAgain()))
                modules.emplace_back(module->moduleName());
        }
    }
    if (modules.empty())
        return Failure(Error{ErrorKind::NotFound, {}, localizedString("no module is switched on; name some")});
    return modules;
}

Result<void> checkCalendar(const std::string& calendar) {
    const auto wrong = [&](ErrorKind kind, std::string reason) {
        return Failure(Error{kind, "--calendar '" + calendar + "'", std::move(reason)});
    };
    if (!fitsInUnitFile(calendar))
        return wrong(ErrorKind::Damaged, "control characters, or bytes that are no UTF-8");
    ProcessOptions options;
    options.errors = OutputTo::Capture;
    const auto checked = runProcess(kAnalyze, {"calendar", "--", calendar}, options);
    if (!checked)
        return wrong(ErrorKind::Unavailable,
                     formatText("cannot be checked: %@ is missing (package systemd)", {kAnalyze}));
    if (!checked->succeeded())
        return wrong(ErrorKind::Damaged, checked->errors.substr(0, checked->errors.find('\n')));
    if (checked->output.find("Next elapse: never") != std::string::npos)
        return wrong(ErrorKind::Damaged, "that time never comes");
    return {};
}

} // namespace sweeply
