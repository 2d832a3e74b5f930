#include "app/schedule/InstalledSchedules.h"

#include <charconv>

namespace sweeply {

namespace {

constexpr std::string_view kService = ".service";
constexpr std::string_view kTimer = ".timer";

/// The manager says "@SECONDS", and something else where the timer does not wait for anything.
std::optional<std::int64_t> nextRunOf(const UserUnits& units, const std::string& timer) {
    const auto told =
        units.manager({"show", "--property=NextElapseUSecRealtime", "--value", "--timestamp=unix", "--", timer});
    std::int64_t seconds = 0;
    if (!told || !told->starts_with('@') ||
        std::from_chars(told->data() + 1, told->data() + told->size(), seconds).ec != std::errc())
        return std::nullopt;
    return seconds;
}

} // namespace

std::optional<Schedule> InstalledSchedules::scheduleNamed(const std::string& name) const {
    if (!isNameOfSchedule(name))
        return std::nullopt;
    const auto service = m_units.contents(name + std::string(kService));
    if (!service)
        return std::nullopt;
    return scheduleIn({*service, m_units.contents(name + std::string(kTimer)).value_or("")});
}

std::vector<InstalledSchedule> InstalledSchedules::all() const {
    std::vector<InstalledSchedule> schedules;
    for (const auto& unit : m_units.names()) {
        if (!unit.ends_with(kService))
            continue;
        const auto name = unit.substr(0, unit.size() - kService.size());
        if (auto schedule = scheduleNamed(name))
            schedules.push_back({name, *std::move(schedule), nextRunOf(m_units, name + std::string(kTimer))});
    }
    return schedules;
}

Result<void> InstalledSchedules::install(const Schedule& schedule, const ScheduleRunner& runner) const {
    const auto units = unitsFor(schedule, runner);
    if (!units)
        return Failure(units.error());
    const auto name = nameOf(schedule);
    const bool isNew = !scheduleNamed(name);
    for (const auto kind : {kService, kTimer}) {
        const auto other = m_units.contents(name + std::string(kind));
        if (isNew && (other || other.error().kind != ErrorKind::NotFound))
            return Failure(Error{ErrorKind::AlreadyExists, m_units.folder() + "/" + name + std::string(kind),
                                 "somebody else's unit has this name"});
    }
    auto written = m_units.write(name + std::string(kService), units->service);
    if (written)
        written = m_units.write(name + std::string(kTimer), units->timer);
    if (!written) {
        for (const auto kind : {kService, kTimer}) {
            if (isNew)
                (void)m_units.remove(name + std::string(kind));
        }
        return written;
    }
    auto started = m_units.manager({"daemon-reload"});
    // A timer that runs already would go on waiting for its old time.
    for (const auto* verb : {"enable", "restart"}) {
        if (started)
            started = m_units.manager({verb, name + std::string(kTimer)});
    }
    return started.map([](const std::string&) {});
}

Result<void> InstalledSchedules::remove(const std::vector<std::string>& names) const {
    for (const auto& name : names) {
        if (!scheduleNamed(name))
            return Failure(Error{ErrorKind::NotFound, name, "no such schedule"});
    }
    for (const auto& name : names) {
        const auto timer = name + std::string(kTimer);
        (void)m_units.manager({"disable", "--now", timer}); // without a manager nothing runs
        for (const auto& unit : {timer, name + std::string(kService)}) {
            if (auto removed = m_units.remove(unit); !removed)
                return removed;
        }
    }
    if (!names.empty())
        (void)m_units.manager({"daemon-reload"});
    return {};
}

} // namespace sweeply
