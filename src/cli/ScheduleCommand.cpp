#include "app/OwnProcess.h"
#include "app/schedule/InstalledSchedules.h"
#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"
#include "engine/record/RunRecord.h"
#include "platform/Localization.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

namespace sweeply {

namespace {

Json scheduleJson(const std::string& name, const Schedule& schedule, std::optional<std::int64_t> next) {
    return {{"name", name},
            {"when", schedule.calendar},
            {"next", next ? Json(timeText(*next)) : Json(nullptr)},
            {"root", schedule.root},
            {"user", schedule.user},
            {"options", schedule.options},
            {"modules", schedule.modules}};
}

std::string joined(const std::vector<std::string>& texts) {
    std::string list;
    for (const auto& text : texts)
        list += (list.empty() ? "" : ", ") + text;
    return list;
}

/// What stands before the command when it is typed again, from wherever that is.
Result<std::vector<std::string>> optionsOf(const CommandLine& line, const std::string& user) {
    const auto& references = line.target.references;
    const auto isUser = [](const std::string& text) { return text == "-u" || text == "--user"; };
    std::vector<std::string> options;
    if (std::ranges::none_of(references, isUser))
        options = {"-u", user};
    for (std::size_t at = 0; at < references.size(); at += 2) {
        const auto& value = references[at + 1]; // the one without a value prints, and runs no command
        if (!isUser(references[at]) && !value.starts_with('/') && !value.starts_with('~'))
            return Failure(
                Error{ErrorKind::Other, value,
                      localizedString("a schedule runs in another folder; name this one by its whole path")});
        options.insert(options.end(), {references[at], value});
    }
    if (line.target.osVersion)
        options.insert(options.end(), {"--os", *line.target.osVersion});
    if (line.target.processorFamily)
        options.insert(options.end(), {"--arch", *line.target.processorFamily});
    if (line.pace.threadSleep.count() > 0)
        options.insert(options.end(), {"--pace", "gentle"});
    return options;
}

Result<Schedule> scheduleFor(Session& session) {
    const CommandLine& line = session.commandLine();
    const auto& target = session.application().target();
    if (target.files->isHostRoot())
        return Failure(Error{
            ErrorKind::Other, {}, localizedString("a schedule can write below one folder only: name it with --root")});
    if (line.hasOwnCalendar) {
        if (const auto checked = checkCalendar(line.calendar); !checked)
            return Failure(checked.error());
    }
    auto modules = modulesToSchedule(session.application().scanController(), line.operands);
    if (!modules)
        return Failure(modules.error());
    auto options = optionsOf(line, target.folders.userName);
    if (!options)
        return Failure(options.error());
    return Schedule{.calendar = line.calendar,
                    .root = target.files->rootPath(),
                    .user = target.folders.userName,
                    .options = *std::move(options),
                    .modules = *std::move(modules)};
}

ExitCode listSchedules(const CommandLine& line) {
    Json list = Json::array();
    std::vector<std::vector<std::string>> rows;
    for (const auto& [name, schedule, next] : InstalledSchedules().all()) {
        list.push_back(scheduleJson(name, schedule, next));
        rows.push_back({name, schedule.calendar, next ? timeText(*next) : "-",
                        schedule.root + " (" + schedule.user + ")", joined(schedule.modules)});
    }
    if (line.wantsJson)
        printJson({{"schedules", list}});
    else
        printColumns(std::cout, styleFor(line, Terminal::ofThisProcess()), rows);
    return ExitCode::Done;
}

ExitCode removeSchedules(const CommandLine& line) {
    const InstalledSchedules installed;
    auto names = line.operands;
    if (names.empty()) {
        for (const auto& schedule : installed.all())
            names.push_back(schedule.name);
    }
    if (const auto removed = installed.remove(names); !removed) {
        complain(removed.error().message());
        return removed.error().kind == ErrorKind::NotFound ? ExitCode::Usage : ExitCode::Incomplete;
    }
    if (line.wantsJson)
        printJson({{"removed", names}});
    for (const auto& name : names) {
        if (!line.wantsJson)
            std::cout << localizedFormat("%@ is scheduled no more.", {name}) << "\n";
    }
    return ExitCode::Done;
}

} // namespace

ExitCode runSchedule(Session& session) {
    const auto schedule = scheduleFor(session);
    if (!schedule) {
        session.complain(schedule.error().message());
        return ExitCode::Usage;
    }
    const auto name = nameOf(*schedule);
    const auto installed = InstalledSchedules().install(*schedule, {ownProgram(), SudoSetting::ofThisProcess().isRoot});
    const bool isWritten = installed || installed.error().kind == ErrorKind::Unavailable;
    if (session.commandLine().wantsJson && isWritten)
        session.print({{"schedule", scheduleJson(name, *schedule, std::nullopt)}, {"active", installed.has_value()}});
    else if (isWritten)
        printColumns(
            std::cout, session.style(),
            {{name, schedule->calendar, schedule->root + " (" + schedule->user + ")", joined(schedule->modules)}});
    if (installed)
        return ExitCode::Done;
    session.complain(installed.error().message());
    if (isWritten)
        session.complain(
            localizedFormat("the units are written, but nothing waits for the time. This starts it: %@",
                            {"systemctl --user daemon-reload; systemctl --user enable --now " + name + ".timer"}));
    return installed.error().kind == ErrorKind::Damaged ? ExitCode::Usage : ExitCode::Incomplete;
}

ExitCode runInstalledSchedules(const CommandLine& line) {
    return line.scheduleAction == "list" ? listSchedules(line) : removeSchedules(line);
}

} // namespace sweeply
