#include "app/schedule/ScheduleUnits.h"

#include "formats/UnitFile.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

namespace sweeply {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kMark = "# sweeply-schedule-1 ";
constexpr const char* kExplanation =
    "# Written by \"sweeply-cli schedule\"; \"sweeply-cli schedule remove\" takes it away.\n";
constexpr std::string_view kCalendar = "OnCalendar=";

constexpr const char* kWalls = R"(NoNewPrivileges=yes
ProtectSystem=strict
ProtectControlGroups=yes
ProtectKernelTunables=yes
RestrictAddressFamilies=AF_UNIX
RestrictNamespaces=yes
RestrictRealtime=yes
LockPersonality=yes
SystemCallArchitectures=native
UnsetEnvironment=SUDO_ASKPASS
)";
/// What lets the manager of a user set the others up. Root's needs it not, and would lose its rights to the files of
/// others.
constexpr const char* kUsersWall = "PrivateUsers=yes\n";
constexpr const char* kManners = R"(IOSchedulingClass=idle
CPUSchedulingPolicy=idle
Nice=19
)";

Failure cannotHold(const std::string& text, const char* what) {
    return Failure(Error{ErrorKind::Damaged, text, std::string("a unit file cannot hold ") + what});
}

std::vector<std::string> argumentsOf(const Schedule& schedule) {
    std::vector<std::string> arguments{"--root", schedule.root};
    arguments.insert(arguments.end(), schedule.options.begin(), schedule.options.end());
    arguments.insert(arguments.end(), {"clean", "--yes", "--notify"});
    arguments.insert(arguments.end(), schedule.modules.begin(), schedule.modules.end());
    return arguments;
}

Json markOf(const Schedule& schedule) {
    return {
        {"root", schedule.root}, {"user", schedule.user}, {"options", schedule.options}, {"modules", schedule.modules}};
}

/// The rest of the first line that begins so.
std::optional<std::string_view> lineAfter(std::string_view contents, std::string_view start) {
    for (std::size_t at = 0; at < contents.size();) {
        const auto end = std::min(contents.find('\n', at), contents.size());
        if (const auto line = contents.substr(at, end - at); line.starts_with(start))
            return line.substr(start.size());
        at = end + 1;
    }
    return std::nullopt;
}

} // namespace

Result<ScheduleUnits> unitsFor(const Schedule& schedule, const ScheduleRunner& runner) {
    const auto& program = runner.program;
    auto texts = argumentsOf(schedule);
    texts.push_back(program);
    texts.push_back(schedule.calendar);
    for (const auto& text : texts) {
        if (!fitsInUnitFile(text))
            return cannotHold(text, "control characters, or bytes that are no UTF-8");
    }
    if (program.find_first_of("\"'\\$") != std::string::npos)
        return cannotHold(program, "quotes, backslashes and dollar signs in a program's path");
    std::string command = unitArgument(program);
    for (const auto& argument : argumentsOf(schedule))
        command += " " + unitArgument(argument);
    const std::string what = unitText(schedule.root + " (" + schedule.user + ")");

    ScheduleUnits units;
    // Standard output has what the record of the run has as well. A root that is not there is the program's to tell.
    units.service = kExplanation + std::string(kMark) + markOf(schedule).dump() + "\n\n[Unit]\nDescription=Clean " +
                    what + "\n\n[Service]\nType=oneshot\nExecStart=" + command +
                    "\nStandardOutput=null\nStandardError=journal\n" + kManners + kWalls +
                    (runner.isRoot ? "" : kUsersWall) + "ReadWritePaths=" + unitWord("-" + schedule.root) + "\n";
    units.timer = kExplanation + std::string("\n[Unit]\nDescription=When to clean ") + what + "\n\n[Timer]\n" +
                  std::string(kCalendar) + unitText(schedule.calendar) +
                  "\nPersistent=yes\n\n[Install]\nWantedBy=timers.target\n";
    return units;
}

std::optional<Schedule> scheduleIn(const ScheduleUnits& units) {
    const auto mark = lineAfter(units.service, kMark);
    if (!mark)
        return std::nullopt;
    try {
        const auto json = Json::parse(*mark);
        return Schedule{.calendar = std::string(lineAfter(units.timer, kCalendar).value_or("")),
                        .root = json.at("root"),
                        .user = json.at("user"),
                        .options = json.at("options"),
                        .modules = json.at("modules")};
    } catch (const Json::exception&) {
        return std::nullopt;
    }
}

} // namespace sweeply
